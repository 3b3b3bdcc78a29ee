#include "Host/Receiver/World/Applications.h"

#include <algorithm>
#include <limits>

#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

constexpr std::size_t kLargestNumberOfViews = 64;
constexpr std::uint32_t kNoPlayer = 0;

// An address with the query and the fragment of what referred to it. It may have a query of its own.
std::string withRest(const std::string& url, const std::string& rest) {
    const auto hash = std::min(url.find('#'), url.size());
    const auto fragment = std::min(rest.find('#'), rest.size());
    auto query = rest.substr(0, fragment);
    if (!query.empty() && url.substr(0, hash).find('?') != std::string::npos)
        query.front() = '&';
    return url.substr(0, hash) + query + (fragment < rest.size() ? rest.substr(fragment) : url.substr(hash));
}

}  // namespace

bool Applications::registerView(std::int32_t viewId, const std::string& url, const CallerName& shell) {
    if (viewId < 0)
        throw ScenarioError("", "a view id must not be negative, is " + std::to_string(viewId));
    const bool isNew = !m_views.contains(viewId);
    if (isNew && m_views.size() >= kLargestNumberOfViews)
        throw ScenarioError("", "there are already " + std::to_string(m_views.size()) + " views");
    auto& view = m_views.try_emplace(viewId, View{.shell = shell}).first->second;
    view.url = url;
    view.activity = ++m_activity;
    return isNew;
}

bool Applications::unregisterView(std::int32_t viewId) {
    return m_views.erase(viewId) > 0;
}

bool Applications::forget(const CallerName& shell) {
    return std::erase_if(m_views, [&shell](const auto& entry) { return entry.second.shell == shell; }) > 0;
}

bool Applications::create(const std::string& url, std::int32_t viewId, const CallerName& creator) {
    const auto scheme = schemeOf(url);
    const bool known = scheme == "http" || scheme == "https" || scheme == "dvb" || scheme == "file";
    if (!known || !m_views.contains(viewId) || viewId == std::numeric_limits<std::int32_t>::max())
        return false;
    if (matchesAny(url, m_scenario.applications.refused))
        return false;
    const auto childId = viewId + 1;
    if (m_views.contains(childId))
        destroy(childId);
    if (m_views.size() >= kLargestNumberOfViews)
        return false;
    m_views[childId] = View{m_views[viewId].shell, resolved(url), true, true, creator, ++m_activity};
    m_events.applicationStarted(childId, m_views[childId].url);
    return true;
}

bool Applications::fail(std::int32_t viewId) {
    const auto found = m_views.find(viewId);
    if (found == m_views.end())
        return false;
    m_events.pluginEvent(found->second.creator, Event::ApplicationLoadError, kNoPlayer);
    return true;
}

void Applications::destroy(std::int32_t viewId) {
    // Told also when it is not known any more: the shell may just have taken leave of an earlier view of this
    // id, and show the one that this is about.
    m_views.erase(viewId);
    if (viewId >= 0)
        m_events.applicationDestroyed(viewId);
}

void Applications::setVisible(std::int32_t viewId, bool visible) {
    const auto found = m_views.find(viewId);
    if (found == m_views.end())
        return;
    found->second.visible = visible;
    found->second.activity = visible ? ++m_activity : 0;
    m_events.applicationVisibilityChanged(viewId, visible);
}

bool Applications::isTrusted() const {
    const auto* view = activeView();
    if (view == nullptr)
        return false;
    const auto origin = originOf(view->url);
    return !origin.empty() && matchesAny(origin, m_scenario.applications.trustedOrigins);
}

bool Applications::isInBoundary(const std::string& url) const {
    const auto* view = activeView();
    const auto origin = originOf(url);
    if (view == nullptr || origin.empty())
        return false;
    return origin == originOf(view->url) || matchesAny(origin, m_scenario.applications.boundaryOrigins);
}

const View* Applications::activeView() const {
    const View* active = nullptr;
    for (const auto& [id, view] : m_views) {
        if (active == nullptr || view.activity > active->activity)
            active = &view;
    }
    return active;
}

std::string Applications::resolved(const std::string& url) const {
    const auto reference = parseAitReference(url);
    if (!reference)
        return url;
    for (const auto& application : m_scenario.applications.broadcast) {
        if (application.id == reference->application)
            return withRest(application.url, reference->rest);
    }
    return url;
}

}  // namespace Receiver
