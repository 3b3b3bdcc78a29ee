#include "InjectedBundle/Src/PageHandlers.h"

#include <algorithm>
#include <set>

#include "InjectedBundle/Src/FrameBuiltIns.h"
#include "InjectedBundle/Src/JSEventDispatcher.h"
#include "InjectedBundle/Src/PageBound.h"

namespace OipfJavaScript {

void PageHandlers::WindowObjectCleared(WKBundlePageRef page, WKBundleFrameRef frame, bool isMainFrame,
                                       JSGlobalContextRef context) {
    Leave([&](JSGlobalContextRef known, const Owner& owner) {
        return known != context && owner.page == page && (isMainFrame || owner.frame == frame);
    });
    // A context may stand where one of another frame stood: the engine reuses the memory of those that are
    // gone.
    m_owners[context] = {page, frame};
    FrameBuiltIns::Capture(context);
}

void PageHandlers::FrameRemoved(WKBundleFrameRef frame) {
    Leave([&](JSGlobalContextRef, const Owner& owner) { return owner.frame == frame; });
}

void PageHandlers::Leave(const std::function<bool(JSGlobalContextRef, const Owner&)>& leaves) {
    std::set<JSGlobalContextRef> leaving;
    std::erase_if(m_owners, [&](const auto& entry) {
        const bool gone = leaves(entry.first, entry.second);
        if (gone)
            leaving.insert(entry.first);
        return gone;
    });
    if (leaving.empty())
        return;
    const auto belongs = [&](JSGlobalContextRef each) { return leaving.contains(each); };
    JSEventDispatcher::DropHandlers(belongs);
    PageBound::EndAll(belongs);
    std::ranges::for_each(leaving, FrameBuiltIns::Forget);
}

}  // namespace OipfJavaScript
