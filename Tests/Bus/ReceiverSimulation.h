// The receiver's world on a clock of the test's own, and what it tells.
#pragma once

#include <functional>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/World.h"

namespace ReceiverTest {

using namespace Receiver;

inline constexpr std::int64_t kStartUtc = 1'700'000'000;

class ManualTimers : public Timers {
 public:
    Id after(std::uint32_t milliseconds, std::function<void()> action) override {
        m_actions.emplace(std::make_pair(m_now + milliseconds, ++m_lastId), std::move(action));
        return m_lastId;
    }
    void cancel(Id id) override {
        std::erase_if(m_actions, [id](const auto& entry) { return entry.first.second == id; });
    }
    void post(std::function<void()> action) override { (void)after(0, std::move(action)); }
    std::int64_t now() const override { return m_now; }
    std::int64_t utc() const override { return kStartUtc + m_now / 1000; }

    void pass(std::int64_t milliseconds) {
        const auto end = m_now + milliseconds;
        while (!m_actions.empty() && m_actions.begin()->first.first <= end) {
            const auto next = m_actions.extract(m_actions.begin());
            m_now = next.key().first;
            next.mapped()();
        }
        m_now = end;
    }
    std::size_t pending() const { return m_actions.size(); }

 private:
    std::int64_t m_now = 0;
    Id m_lastId = 0;
    std::map<std::pair<std::int64_t, Id>, std::function<void()>> m_actions;
};

class HeardEvents : public ReceiverEvents {
 public:
    std::vector<std::string> heard;
    std::vector<std::string> payloads;  // Of stream events.
    std::vector<std::string> running;

    std::vector<std::string> take() { return std::exchange(heard, {}); }

 private:
    template <typename... Values>
    void hear(const char* name, const Values&... values) {
        std::ostringstream line;
        line << name;
        ((line << " " << values), ...);
        heard.push_back(line.str());
    }
    void pluginEvent(const CallerName&, std::int32_t event, std::uint32_t id) override {
        hear("event", event, id);
    }
    void pluginEventUnsigned(const CallerName&, std::int32_t event, std::uint32_t id,
                             std::uint32_t value) override {
        hear("unsigned", event, id, value);
    }
    void pluginEventSigned(const CallerName&, std::int32_t event, std::uint32_t id,
                           std::int32_t value) override {
        hear("signed", event, id, value);
    }
    void pluginEventFloat(const CallerName&, std::int32_t event, std::uint32_t id, double value) override {
        hear("float", event, id, value);
    }
    void pluginEventData(const CallerName&, std::int32_t event, std::uint32_t id, std::int32_t first,
                         std::int32_t second) override {
        hear("data", event, id, first, second);
    }
    void streamEvent(const CallerName&, std::uint32_t, std::int16_t, const std::string& name,
                     const std::vector<std::uint8_t>& data, std::uint32_t jobId) override {
        payloads.emplace_back(data.begin(), data.end());
        hear("stream", name, jobId);
    }
    void playReadyResponse(const CallerName&, std::uint32_t id, std::int32_t code,
                           const std::string& message) override {
        hear("drm", id, code, message);
    }
    void fileResponse(const CallerName&, std::uint32_t handle, const std::string&,
                      const std::vector<std::uint8_t>& data, bool status) override {
        hear("file", handle, std::string(data.begin(), data.end()), status);
    }
    void planeShown(const PlanePlayer& player, const PlaneContent& content) override {
        const auto& window = content.window;
        hear("plane", player.pluginId, window.x, window.y, window.width, window.height, window.fullScreen,
             content.title);
    }
    void runningChannelChanged(const RunningChannel& channel) override { running.push_back(channel.name); }
    void planeHidden(const PlanePlayer& player) override { hear("no plane", player.pluginId); }
    void applicationStarted(std::int32_t viewId, const std::string& url) override {
        hear("started", viewId, url);
    }
    void applicationDestroyed(std::int32_t viewId) override { hear("destroyed", viewId); }
    void applicationVisibilityChanged(std::int32_t viewId, bool visible) override {
        hear("view", viewId, visible);
    }
    void keyMaskChanged(std::uint32_t mask) override { hear("mask", mask); }
    void keyPressed(std::uint32_t code) override { hear("key", code); }
};

struct Simulation {
    explicit Simulation(const std::string& scenario, const std::string& folder = ".")
        : world(parseJson(scenario), folder, timers, events) {}

    // What is told until then, since the last time.
    std::vector<std::string> heardAfter(std::int64_t milliseconds) {
        timers.pass(milliseconds);
        return events.take();
    }

    ManualTimers timers;
    HeardEvents events;
    World world;
    Caller& me = world.caller("me");
};

}  // namespace ReceiverTest
