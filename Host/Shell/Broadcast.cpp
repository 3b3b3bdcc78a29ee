#include "Host/Shell/Broadcast.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace Shell {

namespace {

constexpr char kBoundaries[] = "/applications/boundary_origins";
constexpr char kApplications[] = "/applications/broadcast";

template <typename Item>
std::string jsonList(const std::vector<Item>& items, const std::function<std::string(const Item&)>& jsonOf) {
    std::string json;
    for (const Item& item : items)
        json += (json.empty() ? "" : ",") + jsonOf(item);
    return "[" + json + "]";
}

std::string describe(const AitApplication& application) {
    return application.id + (application.name.empty() ? "" : " (" + application.name + ")");
}

}  // namespace

Broadcast::Broadcast(std::string userAgent, ReceiverControl& receiver)
    : m_userAgent(std::move(userAgent)), m_receiver(receiver) {}

std::vector<AitApplication> Broadcast::applicationsOf(const std::string& xml, const std::string& url,
                                                      std::string& reasons) const {
    std::vector<AitApplication> applications;
    if (!readAit(xml, url, applications, reasons)) {
        reasons = "this is no AIT: " + reasons;
        return {};
    }
    std::erase_if(applications, [&](const AitApplication& application) {
        const std::string refusal = refusalOf(application, m_userAgent);
        if (!refusal.empty())
            reasons += (reasons.empty() ? "" : "; ") + describe(application) + " does not run: " + refusal;
        return !refusal.empty();
    });
    std::stable_sort(applications.begin(), applications.end(), [](const auto& one, const auto& other) {
        return std::pair(one.startsItself(), one.priority) > std::pair(other.startsItself(), other.priority);
    });
    if (applications.empty() && reasons.empty())
        reasons = "the AIT is empty";
    return applications;
}

void Broadcast::announce(const std::vector<AitApplication>& applications) {
    m_receiver.setWorld(kApplications, jsonList<AitApplication>(applications, [](const auto& application) {
                            return "{\"id\":" + jsonText(application.id) +
                                   ",\"url\":" + jsonText(application.url) + "}";
                        }));
}

void Broadcast::setBoundaries(std::int32_t view, const std::vector<std::string>& origins) {
    m_boundaries[view] = jsonList<std::string>(origins, jsonText);
}

void Broadcast::forgetBoundaries(std::int32_t view) {
    m_boundaries.erase(view);
}

void Broadcast::changeTop(std::int32_t view) {
    const auto found = m_boundaries.find(view);
    // Nothing to do and nothing to undo.
    if (found == m_boundaries.end() && m_told.empty())
        return;
    if (m_told.empty())
        m_told = m_usual = m_receiver.world(kBoundaries);
    const std::string& wanted = found == m_boundaries.end() ? m_usual : found->second;
    if (wanted.empty() || wanted == m_told)
        return;
    m_told = wanted;
    m_receiver.setWorld(kBoundaries, m_told);
}

}  // namespace Shell
