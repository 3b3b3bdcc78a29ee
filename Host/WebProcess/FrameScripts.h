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
// lets(keyCode, pressed) tells whether the frame gets a key that is not the remote control's; null: it does.
void runBrowserExtensions(JSGlobalContextRef context, JSObjectRef glass, JSObjectRef lets);

// Calls reached(isMainFrame) once the document has been parsed, before the page's own listeners hear of it.
void listenForDocumentEnd(JSGlobalContextRef context, JSObjectRef reached);

// A non-enumerable "__collectGarbage" on the window, for tests.
void defineCollectGarbage(JSGlobalContextRef context);

}  // namespace WebProcess
