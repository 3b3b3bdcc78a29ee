// Stream events from subscription to trigger, and what remains of them when pages are done.

#include "InjectedBundle/Src/BindingObject.h"
#include "JavaScript/Src/StreamEventHandler.h"
#include "Tests/Unit/TelevisionPage.h"

namespace {

using namespace std::string_literals;
using OipfJavaScript::CStreamEventHandler;
using testing::ElementsAre;
using testing::IsEmpty;

class AStreamEvent : public TelevisionPage {
 protected:
    AStreamEvent() {
        api.Reply("StreamEventUnsubscribe", "(true,)");
        Eval("function f(e) { log.push('f', e.name, e.data, e.text, e.status); }");
    }

    void Subscribe(unsigned jobId, const std::string& arguments) {
        api.Reply("StreamEventSubscribe", "(" + std::to_string(jobId) + ",)");
        EXPECT_EQ(Value("tv.addStreamEventListener(" + arguments + ")"), "undefined");
    }
    static void Send(uint32_t jobId, const std::string& payload = "",
                     EEventStatus status = E_EVENT_STATUS_TRIGGER) {
        const CDSMCCStreamEventData record{.status = status,
                                           .eventId = 3,
                                           .name = "tick",
                                           .data = {payload.begin(), payload.end()},
                                           .jobId = jobId};
        Trigger(&record);
    }
    size_t Unsubscribed(unsigned jobId) {
        // When a later call has been answered, all that was sent before has arrived.
        (void)CDAEBrowserAPIWK::GetInstance()->IsTrusted();
        return Count(api.TakeCalls(), "StreamEventUnsubscribe (" + std::to_string(jobId) + ",)");
    }
};

TEST_F(AStreamEvent, ReachesItsListenerWithItsPayload) {
    Subscribe(41, "'dvb://x', 'tick', f");
    EXPECT_THAT(api.TakeCalls(), ElementsAre("StreamEventSubscribe ('dvb://x', 'tick')"));
    Send(41, "\x0A\xFF");
    EXPECT_EQ(Log(), "f,tick,0AFF,\n,trigger");
    Send(41, "a\0\xC3\xA9\xC3z\x80"s);
    EXPECT_EQ(Log(), "f,tick,6100C3A9C37A80,a\0\u00e9z,trigger"s);
    Send(41);
    EXPECT_EQ(Log(), "f,tick,,,trigger");
    Send(41, "x", static_cast<EEventStatus>(2));
    EXPECT_EQ(Log(), "f,tick,78,x,unknown");
    Send(41, "x", E_EVENT_STATUS_ERROR);
    Send(42, "x");
    Trigger(nullptr);
    EXPECT_EQ(Log(), "");
    EXPECT_STREQ(CStreamEventHandler::FormatStatus(E_EVENT_STATUS_ERROR), "error");
}

TEST_F(AStreamEvent, IsRefusedWithoutTwoTextsAndAFunction) {
    for (const char* arguments : {"'dvb://x', 'tick'", "'dvb://x', 'tick', f, 1", "1, 'tick', f",
                                  "'dvb://x', null, f", "'dvb://x', 'tick', null", "'dvb://x', 'tick', {}"}) {
        EXPECT_EQ(Value("tv.addStreamEventListener(" + std::string(arguments) + ")"), "null") << arguments;
        EXPECT_EQ(Value("tv.removeStreamEventListener(" + std::string(arguments) + ")"), "null") << arguments;
    }
    EXPECT_THAT(api.TakeCalls(), IsEmpty());
}

TEST_F(AStreamEvent, IsSubscribedOnceForEachTimeAListenerIsAdded) {
    Subscribe(41, "'dvb://x', 'tick', f");
    Subscribe(42, "'dvb://x', 'tick', f");
    Subscribe(42, "'dvb://x', 'tick', f");
    Send(41);
    EXPECT_EQ(Eval("log.splice(0).length / 5"), "1");
    Send(42);
    EXPECT_EQ(Eval("log.splice(0).length / 5"), "2") << "one job for two subscriptions";
    (void)api.TakeCalls();
    EXPECT_EQ(Value("tv.removeStreamEventListener('dvb://x', 'tick', f)"), "undefined");
    EXPECT_THAT(api.TakeCalls(), ElementsAre("StreamEventUnsubscribe (41,)", "StreamEventUnsubscribe (42,)",
                                             "StreamEventUnsubscribe (42,)"));
}

TEST_F(AStreamEvent, IsNotHeardByAListenerThatWasRemoved) {
    Subscribe(41, "'dvb://x', 'tick', f");
    Subscribe(42, "'dvb://x', 'tock', f");
    Eval(R"(tv.removeStreamEventListener('dvb://y', 'tick', f);
            tv.removeStreamEventListener('dvb://x', 'tick', () => {});)");
    (void)api.TakeCalls();
    Send(41);
    EXPECT_NE(Log(), "");
    Eval("tv.addEventListener('PlayStateChange', f); tv.removeStreamEventListener('dvb://x', 'tick', f)");
    Fire(E_VBO_STATE_CHANGE, id, 1, 1000);
    EXPECT_EQ(Log(), "") << "it goes from the object's other events too";
    EXPECT_EQ(Unsubscribed(41), 1U);
    Send(41);
    Send(41);
    EXPECT_EQ(Log(), "");
    Send(42);
    EXPECT_NE(Log(), "") << "another event of the same function";
    // The receiver may use the identifier again before anything came for the old one.
    Eval("tv.removeStreamEventListener('dvb://x', 'tock', f)");
    (void)api.TakeCalls();
    Eval("tv.addEventListener('PlayStateChange', f); tv.removeStreamEventListener('dvb://x', 'tock', f)");
    EXPECT_EQ(Unsubscribed(42), 0U);
    Fire(E_VBO_STATE_CHANGE, id, 1, 1000);
    EXPECT_NE(Log(), "") << "nothing was there to be removed";
    Subscribe(42, "'dvb://x', 'tack', f");
    Send(42);
    EXPECT_EQ(Eval("log.splice(0).length / 5"), "1");
}

TEST_F(AStreamEvent, SurvivesListenersThatDropTheirObject) {
    api.Reply("StreamEventSubscribe", "(41,)");
    Eval(R"(function go(stays) {
        var each = make();
        each.addStreamEventListener('dvb://x', 'tick', function once(e) {
            each.removeStreamEventListener('dvb://x', 'tick', once);
            each = null;
            for (var i = 0; i < 3; i++) make();
            collect();
            log.push(e.data, e.text);
        });
        if (stays)
            each.addStreamEventListener('dvb://x', 'tick', () => log.push('stays'));
    }
    for (var i = 0; i < 10; i++) go(i % 2);)");
    Send(41, "ab");
    EXPECT_EQ(Eval("['ab', 'stays'].map(what => log.filter(l => l === what).length).join()"), "10,5");
    Eval("log = []");
    page.main.CollectGarbage();
    Send(41, "ab");
    EXPECT_EQ(Log(), "stays,stays,stays,stays,stays") << "the other listener keeps its object";
}

TEST_F(AStreamEvent, EndsWithTheReceiverThatHadIt) {
    Subscribe(41, "'dvb://x', 'tick', f");
    Subscribe(42, "'dvb://x', 'tock', f");
    Subscribe(43, "'dvb://x', 'tack', f");
    Eval("tv.removeStreamEventListener('dvb://x', 'tock', f)");
    const uint64_t before = CDAEBrowserAPIWK::GetInstance()->Life();
    api.Stop();
    EXPECT_TRUE(WaitFor([&] { return CDAEBrowserAPIWK::GetInstance()->Life() != before; }));
    EXPECT_EQ(LogCapture::Count("the receiver has gone, and 2 stream event subscriptions with it"), 1);
    api.Start();
    EXPECT_TRUE(WaitFor([] { return CDAEBrowserAPIWK::GetInstance()->IsBroadcastRelated(); }));
    (void)api.TakeCalls();
    Send(41);
    EXPECT_EQ(Log(), "") << "the trigger of another subscription";
    Eval("tv.removeStreamEventListener('dvb://x', 'tack', f)");
    page.main.Navigate();
    page.main.CollectGarbage();
    (void)CDAEBrowserAPIWK::GetInstance()->IsTrusted();
    EXPECT_THAT(api.TakeCalls(), ElementsAre("IsTrusted ()"));
    EXPECT_EQ(LogCapture::Count("the receiver has gone, and 2 stream event subscriptions with it"), 1);
}

TEST_F(AStreamEvent, EndsWithItsPageOrFrameAndHoldsItsObjectUntilThen) {
    api.Reply("StreamEventSubscribe", "(77,)");
    const char* const subscribe = R"((function() {
        for (var i = 0; i < 20; i++) {
            var each = PrivateObjectFactory.createVideoBroadcastObject();
            each.addStreamEventListener('dvb://x', 'tick', () => 0);
            each.addStreamEventListener('dvb://x', 'tock', log.push);
            each.removeStreamEventListener('dvb://x', 'tock', log.push);
        }
    })())";
    page.main.CollectGarbage();
    const size_t before = OipfJavaScript::BindingObject::AliveCount();
    Eval(subscribe);
    EXPECT_EQ(Unsubscribed(77), 20U);
    page.main.CollectGarbage();
    EXPECT_GE(OipfJavaScript::BindingObject::AliveCount(), before + 20) << "a trigger may come";
    FakeFrame& child = page.AddFrame();
    child.Eval("var log = []; " + std::string(subscribe));
    EXPECT_EQ(Unsubscribed(77), 20U);
    child.Remove();
    EXPECT_EQ(Unsubscribed(77), 20U) << "what was removed is not unsubscribed again";
    page.main.Navigate();
    EXPECT_EQ(Unsubscribed(77), 20U);
    Eval(R"((function() {
        for (var i = 0; i < 20; i++) {
            var each = PrivateObjectFactory.createVideoBroadcastObject();
            for (const act of ['add', 'remove'])
                each[act + 'StreamEventListener']('dvb://x', 'tick', Array.of);
        }
    })())");
    page.main.CollectGarbage();
    EXPECT_LT(OipfJavaScript::BindingObject::AliveCount(), before + 10)
        << "nothing is left that would be called";
}

}  // namespace
