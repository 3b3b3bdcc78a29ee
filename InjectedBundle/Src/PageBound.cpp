#include "InjectedBundle/Src/PageBound.h"

#include <set>
#include <vector>

namespace OipfJavaScript {

namespace {

std::set<PageBound*>& Known() {
    static auto* const known = new std::set<PageBound*>();
    return *known;
}

}  // namespace

PageBound::PageBound(JSContextRef context) : m_pageContext(JSContextGetGlobalContext(context)) {
    Known().insert(this);
}

PageBound::PageBound(const PageBound& other) : m_pageContext(other.m_pageContext) {
    Known().insert(this);
}

PageBound::~PageBound() {
    Known().erase(this);
}

void PageBound::EndAll(const std::function<bool(JSGlobalContextRef)>& belongs) {
    std::vector<PageBound*> leaving;
    for (PageBound* each : Known()) {
        if (belongs(each->m_pageContext))
            leaving.push_back(each);
    }
    // One may take another with it.
    for (PageBound* each : leaving) {
        if (Known().erase(each) != 0)
            each->OnPageLeft();
    }
}

}  // namespace OipfJavaScript
