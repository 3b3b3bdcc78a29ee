#include "Host/Receiver/World/StreamEvents.h"

#include <algorithm>

#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

constexpr std::uint32_t kStatusTrigger = 0;
// How often a subscription whose source the scenario lost looks for it again.
constexpr std::uint32_t kRetryMs = 1000;

}  // namespace

std::uint32_t StreamEvents::subscribe(const std::string& url, const std::string& name) {
    const auto* found = source(url, name);
    if (found == nullptr || m_subscriptions.isFull())
        return 0;
    const auto jobId = m_subscriptions.nextId();
    waitForTrigger(jobId, m_subscriptions.emplace(jobId, m_timers, url, name), found->periodMs);
    return jobId;
}

bool StreamEvents::unsubscribe(std::uint32_t jobId) {
    const bool known = m_subscriptions.find(jobId) != nullptr;
    m_subscriptions.erase(jobId);
    return known;
}

std::size_t StreamEvents::trigger(const std::string& name, const std::vector<std::uint8_t>& data) {
    std::size_t count = 0;
    m_subscriptions.forEach([&](std::uint32_t jobId, const Subscription& subscription) {
        const auto* from = subscription.name == name ? source(subscription.url, name) : nullptr;
        if (from == nullptr)
            return;
        m_events.streamEvent(m_caller, kStatusTrigger, from->eventId, name, data, jobId);
        ++count;
    });
    return count;
}

const StreamEventSource* StreamEvents::source(const std::string& url, const std::string& name) const {
    const auto found = std::find_if(m_scenario.streamEvents.begin(), m_scenario.streamEvents.end(),
                                    [&](const StreamEventSource& candidate) {
                                        return candidate.name == name && matchesPattern(url, candidate.url);
                                    });
    return found == m_scenario.streamEvents.end() ? nullptr : &*found;
}

void StreamEvents::waitForTrigger(std::uint32_t jobId, Subscription& subscription, std::uint32_t periodMs) {
    subscription.timer.start(periodMs, [this, jobId] { trigger(jobId); });
}

void StreamEvents::trigger(std::uint32_t jobId) {
    auto* subscription = m_subscriptions.find(jobId);
    if (subscription == nullptr)
        return;
    const auto* from = source(subscription->url, subscription->name);
    waitForTrigger(jobId, *subscription, from == nullptr ? kRetryMs : from->periodMs);
    if (from != nullptr)
        m_events.streamEvent(m_caller, kStatusTrigger, from->eventId, from->name,
                             from->payloads[subscription->fired++ % from->payloads.size()], jobId);
}

}  // namespace Receiver
