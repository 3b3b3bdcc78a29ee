// Script that the adapter runs in a frame's own world.
#pragma once

#include <string>
#include <string_view>

#include <JavaScriptCore/JSBase.h>

namespace WebProcess {

// Runs a whole script; an exception is logged with the script's name and goes no further.
void runScript(JSGlobalContextRef context, const std::string& source, const char* name);

// Key constants as global names, as a television's browser has them; to be called when the bundle has defined
// KeyEvent.
void defineKeyNames(JSGlobalContextRef context);

// The extensions that the television's browser has and WebKitGTK has not, with what they reach the glass by.
void runBrowserExtensions(JSGlobalContextRef context, JSObjectRef glass);

// Who wants to know that a frame's document has been parsed; must outlive every page.
class DocumentEndListener {
 public:
    virtual void didReachDocumentEnd(JSGlobalContextRef context, bool isMainFrame) = 0;

 protected:
    ~DocumentEndListener() = default;
};

// Tells the listener once, before the page's own listeners hear of it.
void listenForDocumentEnd(JSGlobalContextRef context, DocumentEndListener& listener);

// Who decides whether the frame gets a key that is neither the remote control's nor known to be; must outlive
// every page.
class KeyJudge {
 public:
    virtual bool lets(unsigned keyCode, bool pressed) = 0;

 protected:
    ~KeyJudge() = default;
};

// To be called before anything else listens to keys.
void judgeKeys(JSGlobalContextRef context, KeyJudge& judge);

// A non-enumerable "__collectGarbage" on the window, for tests.
void defineCollectGarbage(JSGlobalContextRef context);

}  // namespace WebProcess
