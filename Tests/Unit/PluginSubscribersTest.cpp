// Delivery of an event to subscribers that come and go inside it.

#include <functional>
#include <memory>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "IPC/DBUS/Src/PluginSubscribers.h"

namespace {

class Controller final : public IPluginController {
 public:
    void OnEvent(event_t event) override {
        heard.push_back(event.event);
        if (act)
            act(event);
    }

    std::vector<int> heard;
    std::function<void(const event_t&)> act;
};

// Controllers in the order in which they are called: that of their addresses.
class Subscribers : public testing::Test {
 protected:
    void SetUp() override {
        for (Controller& controller : m_controllers)
            m_subscribers.Add(&controller);
    }
    void Deliver(int event) { m_subscribers.Deliver(event_t::Plain(event, 0)); }
    std::vector<size_t> Heard() const {
        std::vector<size_t> counts;
        for (const Controller& controller : m_controllers)
            counts.push_back(controller.heard.size());
        return counts;
    }
    using Counts = std::vector<size_t>;

    PluginSubscribers m_subscribers;
    Controller m_controllers[3];
};

TEST_F(Subscribers, HearEachEventOnceInTheOrderOfTheirAddresses) {
    std::vector<IPluginController*> order;
    for (Controller& controller : m_controllers) {
        m_subscribers.Add(&controller);
        controller.act = [&](const event_t&) { order.push_back(&controller); };
    }
    m_subscribers.Add(nullptr);
    Deliver(1);
    EXPECT_EQ(order,
              (std::vector<IPluginController*>{&m_controllers[0], &m_controllers[1], &m_controllers[2]}));
}

TEST_F(Subscribers, RemovedDuringADeliveryAreNotCalledAfterwards) {
    m_controllers[0].act = [&](const event_t&) { m_subscribers.Remove(&m_controllers[1]); };
    Deliver(1);
    EXPECT_EQ(Heard(), (Counts{1, 0, 1}));

    m_controllers[0].act = [&](const event_t&) {
        for (Controller& controller : m_controllers)
            m_subscribers.Remove(&controller);
    };
    Deliver(2);
    Deliver(3);
    EXPECT_EQ(Heard(), (Counts{2, 0, 1}));
}

// A page drops an object and makes another, which the allocator puts at the same place.
TEST_F(Subscribers, ReplacedAtTheSameAddressDuringADeliveryHearTheNextEvent) {
    m_controllers[0].act = [&](const event_t& event) {
        if (event.event != 1)
            return;
        m_subscribers.Remove(&m_controllers[1]);
        m_subscribers.Add(&m_controllers[1]);
    };
    Deliver(1);
    EXPECT_EQ(Heard(), (Counts{1, 0, 1}));
    Deliver(2);
    EXPECT_EQ(Heard(), (Counts{2, 1, 2}));
}

TEST_F(Subscribers, MayDestroyEachOtherAndThemselvesDuringADelivery) {
    std::set<std::unique_ptr<Controller>> owned;
    const auto subscribe = [&] {
        Controller* controller = owned.insert(std::make_unique<Controller>()).first->get();
        m_subscribers.Add(controller);
        return controller;
    };
    for (int i = 0; i < 20; ++i) {
        subscribe()->act = [&](const event_t&) {
            // The function that runs here may belong to one of the destroyed.
            auto& subscribers = m_subscribers;
            auto& all = owned;
            std::vector<std::unique_ptr<Controller>> keptToTheEnd;
            while (!all.empty()) {
                auto node = all.extract(all.begin());
                subscribers.Remove(node.value().get());
                keptToTheEnd.push_back(std::move(node.value()));
            }
            for (int n = 0; n < 5; ++n) {
                auto fresh = std::make_unique<Controller>();
                subscribers.Add(fresh.get());
                all.insert(std::move(fresh));
            }
        };
    }
    Deliver(1);
    EXPECT_EQ(owned.size(), 5U);
    for (const auto& controller : owned)
        EXPECT_TRUE(controller->heard.empty());
    Deliver(2);
    for (const auto& controller : owned)
        EXPECT_EQ(controller->heard, std::vector{2});
}

TEST_F(Subscribers, HearAnEventThatIsSentInsideAnother) {
    m_controllers[0].act = [&](const event_t& event) {
        if (event.event == 1)
            Deliver(2);
    };
    m_controllers[1].act = [&](const event_t& event) {
        if (event.event == 2)
            m_subscribers.Remove(&m_controllers[2]);
    };
    Deliver(1);
    EXPECT_EQ(m_controllers[0].heard, (std::vector{1, 2}));
    EXPECT_EQ(m_controllers[1].heard, (std::vector{2, 1}));
    EXPECT_TRUE(m_controllers[2].heard.empty());
}

TEST_F(Subscribers, OfOtherThreadsAreNotBeingCalledAfterTheyWereRemoved) {
    std::thread other([&] {
        for (int i = 0; i < 300; ++i) {
            Controller mine;
            m_subscribers.Add(&mine);
            m_subscribers.Remove(&mine);
        }
    });
    for (int i = 0; i < 300; ++i)
        Deliver(i);
    other.join();
    EXPECT_EQ(Heard(), (Counts{300, 300, 300}));
}

}  // namespace
