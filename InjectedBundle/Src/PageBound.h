// What belongs to a page and must end with it, although the collector may free it much later or, held by
// something that waits, not at all: what the receiver keeps for the page, and what still runs for it.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <functional>

namespace OipfJavaScript {

class PageBound {
 public:
    // Ends what belongs to the contexts that the predicate names.
    static void EndAll(const std::function<bool(JSGlobalContextRef)>& belongs);

 protected:
    explicit PageBound(JSContextRef context);
    PageBound(const PageBound& other);
    PageBound& operator=(const PageBound&) = delete;
    // Runs in finalisers: calls nothing of the engine.
    virtual ~PageBound();

    // The page is left; the object may live on, and does nothing for the page any more. Called once at most.
    virtual void OnPageLeft() = 0;

    // For comparison and for other objects of the page.
    [[nodiscard]] JSGlobalContextRef PageContext() const { return m_pageContext; }

 private:
    JSGlobalContextRef m_pageContext;
};

}  // namespace OipfJavaScript
