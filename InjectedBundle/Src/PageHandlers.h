// Ends the handlers of documents that go, and what else belongs to them. Which page and frame a script
// context belongs to is known only when a frame's window object is cleared for a new document; it is
// remembered here until the frame has another one, or goes.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <functional>
#include <map>

#include "Platform/Inc/WKTypes.h"

namespace OipfJavaScript {

class PageHandlers {
 public:
    // A frame's window object was cleared for a new document. A main frame ends what belongs to all earlier
    // documents of its page, a child frame those of its own earlier document.
    void WindowObjectCleared(WKBundlePageRef page, WKBundleFrameRef frame, bool isMainFrame,
                             JSGlobalContextRef context);
    // A frame was taken out of its page; those in it are announced by themselves.
    void FrameRemoved(WKBundleFrameRef frame);

 private:
    struct Owner {
        WKBundlePageRef page;
        WKBundleFrameRef frame;
    };

    void Leave(const std::function<bool(JSGlobalContextRef, const Owner&)>& leaves);

    std::map<JSGlobalContextRef, Owner> m_owners;
};

}  // namespace OipfJavaScript
