// Ends the handlers of pages that are replaced, and what else belongs to them. Which page and frame a script context belongs to is known only when
// a frame's window object is cleared for a new document; it is remembered here until the next one.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <map>

#include "Platform/Inc/WKTypes.h"

namespace OipfJavaScript {

class PageHandlers {
   public:
    // A frame's window object was cleared for a new document. A main frame ends what belongs to all earlier
    // documents of its page, a child frame those of its own earlier document.
    void WindowObjectCleared(WKBundlePageRef page, WKBundleFrameRef frame, bool isMainFrame,
                             JSGlobalContextRef context);

   private:
    struct Owner {
        WKBundlePageRef page;
        WKBundleFrameRef frame;
    };

    std::map<JSGlobalContextRef, Owner> m_owners;
};

}  // namespace OipfJavaScript
