// The browser views that the shell shows, and which of them the receiver started as applications.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

struct View {
    CallerName shell;
    std::string url = {};
    bool visible = true;
    // Started by CreateApplication, not opened by the shell on its own account; by whom.
    bool started = false;
    CallerName creator = Everybody;
    // The view with the highest number was registered, shown or started last; 0 while it is hidden.
    std::uint64_t activity = 0;
};

class Applications {
 public:
    Applications(const Scenario& scenario, ReceiverEvents& events) : m_scenario(scenario), m_events(events) {}

    // The view shows this address, from now on. True when the view was not known before; then it is this
    // shell's. Throws ScenarioError for a negative id and when there are too many views.
    bool registerView(std::int32_t viewId, const std::string& url, const CallerName& shell);
    // False for a view that is not known.
    bool unregisterView(std::int32_t viewId);
    // The shell has gone without a word. False when it had no views.
    bool forget(const CallerName& shell);

    // Starts the application as the child of a view; false when the receiver refuses it.
    [[nodiscard]] bool create(const std::string& url, std::int32_t viewId, const CallerName& creator);
    // The shell cannot show it. False for a view that is not known.
    bool fail(std::int32_t viewId);
    void destroy(std::int32_t viewId);
    void setVisible(std::int32_t viewId, bool visible);

    // Both judge the address of the most recently active view; without any view the answer is no.
    [[nodiscard]] bool isTrusted() const;
    [[nodiscard]] bool isInBoundary(const std::string& url) const;

    [[nodiscard]] const std::map<std::int32_t, View>& views() const { return m_views; }

 private:
    [[nodiscard]] const View* activeView() const;
    // What a dvb: address stands for on this broadcast; other addresses as they are.
    [[nodiscard]] std::string resolved(const std::string& url) const;

    const Scenario& m_scenario;
    ReceiverEvents& m_events;
    std::map<std::int32_t, View> m_views;
    std::uint64_t m_activity = 0;
};

}  // namespace Receiver
