#include "InjectedBundle/Src/PageHandlers.h"

#include <set>

#include "InjectedBundle/Src/JSEventDispatcher.h"
#include "InjectedBundle/Src/PageBound.h"

namespace OipfJavaScript {

void PageHandlers::WindowObjectCleared(WKBundlePageRef page, WKBundleFrameRef frame, bool isMainFrame,
                                       JSGlobalContextRef context) {
    std::set<JSGlobalContextRef> leaving;
    std::erase_if(m_owners, [&](const auto& entry) {
        const auto& [known, owner] = entry;
        const bool leaves = known != context && owner.page == page && (isMainFrame || owner.frame == frame);
        if (leaves)
            leaving.insert(known);
        return leaves;
    });
    // A context may stand where one of another frame stood: the engine reuses the memory of those that are gone.
    m_owners[context] = {page, frame};
    if (leaving.empty())
        return;
    const auto leaves = [&](JSGlobalContextRef each) { return leaving.contains(each); };
    JSEventDispatcher::DropHandlers(leaves);
    PageBound::EndAll(leaves);
}

}  // namespace OipfJavaScript
