// Signals of org.vantrel.hbbtv.IDAEBrowserAPI, up to the subscribers.

#include <optional>
#include <utility>

#include <gmock/gmock.h>

#include "API/Src/IPRResponse.h"
#include "API/Src/SDrmErrorParams.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "Tests/Bus/FakeService.h"
#include "Wrapper/Src/SASMessage.h"

namespace {

// Keeps what it hears; the records by value, because they end with the delivery.
class Listener final : public IPluginController {
 public:
    explicit Listener(CDAEBrowserAPIWK& client) : m_client(client) { client.SubscribeEvents(this); }
    ~Listener() { m_client.UnsubscribeEvents(this); }
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    void OnEvent(event_t event) override {
        if (const auto* record = event.GetRecord<CDSMCCStreamEventData>())
            streamEvent = *record;
        if (const auto* record = event.GetRecord<IPRResponse>())
            response = *record;
        if (const auto* record = event.GetRecord<SDrmErrorParams>())
            drmError = *record;
        if (const auto* record = event.GetRecord<SASMessage>())
            message = *record;
        events.push_back(event);
    }

    std::vector<event_t> events;
    std::optional<CDSMCCStreamEventData> streamEvent;
    std::optional<IPRResponse> response;
    std::optional<SDrmErrorParams> drmError;
    std::optional<SASMessage> message;

 private:
    CDAEBrowserAPIWK& m_client;
};

class ASignal : public testing::Test {
 protected:
    void SetUp() override { LogCapture::Clear(); }

    // The event of the signal, after the listener has heard it.
    event_t Send(const std::string& name, const std::string& values) {
        const size_t before = m_listener.events.size();
        m_service.Emit(name, values);
        if (WaitFor([&] { return m_listener.events.size() > before; }))
            return m_listener.events.back();
        ADD_FAILURE() << name << " was not heard";
        return {};
    }

    // Signals arrive in order: when this one is heard, all before it have been handled.
    void WaitForEarlierSignals() { EXPECT_EQ(Send("PluginEvent", "(400, 0)").event, E_APP_LOW_MEMORY); }

    FakeService m_service{"IDAEBrowserAPI"};
    CDAEBrowserAPIWK m_client;
    Listener m_listener{m_client};
};

TEST_F(ASignal, BecomesAnEventWithItsWords) {
    event_t event = Send("PluginEvent", "(107, 3)");
    EXPECT_EQ(std::tie(event.event, event.plugin_id), std::tuple(E_VBO_GOING_DOWN, 3U));
    EXPECT_EQ(event.Unsigned(0) | event.Unsigned(1), 0U);

    event = Send("PluginEventUnsigned", "(202, 4294967295, 4000000000)");
    EXPECT_EQ(std::tie(event.event, event.plugin_id), std::tuple(E_AVC_PLAYPOSITION, 0xFFFFFFFFU));
    EXPECT_EQ(event.Unsigned(), 4000000000U);

    EXPECT_EQ(Send("PluginEventFloat", "(201, 1, 1.5)").Float(), 1.5F);
    EXPECT_EQ(Send("PluginEventFloat", "(201, 1, 0.1)").Float(), 0.1F);
    EXPECT_EQ(Send("PluginEventSigned", "(1000, 0, -5)").Signed(), -5);

    event = Send("PluginEventData", "(-100, 2, -1, 1000)");
    EXPECT_EQ(event.event, -100);
    EXPECT_EQ(event.Signed(0), -1);
    EXPECT_EQ(event.Unsigned(0), 0xFFFFFFFFU);
    EXPECT_EQ(event.Signed(1), kEventSuccess);
}

TEST_F(ASignal, CarriesAStreamEventWithWhateverBytesItHas) {
    const event_t event = Send("StreamEvent", "(0, -2, 'trigger', [0x00, 0xff, 0x00], 12)");
    EXPECT_EQ(std::tie(event.event, event.plugin_id), std::tuple(E_VBO_STREAM_EVENT, 0U));
    ASSERT_TRUE(m_listener.streamEvent);
    EXPECT_EQ(m_listener.streamEvent->status, E_EVENT_STATUS_TRIGGER);
    EXPECT_EQ(m_listener.streamEvent->eventId, 0xFFFE);
    EXPECT_EQ(m_listener.streamEvent->name, "trigger");
    EXPECT_THAT(m_listener.streamEvent->data, testing::ElementsAre(0x00, 0xFF, 0x00));
    EXPECT_EQ(m_listener.streamEvent->jobId, 12U);

    (void)Send("StreamEvent", "(7, 0, '', [], 0)");
    EXPECT_EQ(m_listener.streamEvent->status, EEventStatus{7});
    EXPECT_TRUE(m_listener.streamEvent->data.empty());
}

TEST_F(ASignal, CarriesAPlayReadyResponse) {
    EXPECT_EQ(Send("PlayReadyResponse", "(9, -2, 'gone')").event, E_PLAYREADY_RESPONSE);
    ASSERT_TRUE(m_listener.response);
    EXPECT_EQ(m_listener.response->transactionId, 9U);
    EXPECT_EQ(m_listener.response->resultCode, -2);
    EXPECT_EQ(m_listener.response->resultMessage, "gone");
}

TEST_F(ASignal, CarriesACommonInterfaceMessageOnlyWhenItIsValid) {
    m_service.Emit("SASMessage", "([],)");
    m_service.Emit("SASMessage", "([0x03, 0x4b, 0x13],)");
    WaitForEarlierSignals();
    EXPECT_EQ(m_listener.events.size(), 1U);
    EXPECT_EQ(LogCapture::Count("SASMessage bytes ay"), 2);
    EXPECT_EQ(LogCapture::Count("3 4B 13 "), 1);

    EXPECT_EQ(Send("SASMessage", "([3, 0x4b, 0x13, 0, 0, 0, 9, 1, 0x0a, 0, 2, 0x41, 0x00],)").event,
              E_SAS_MESSAGE);
    ASSERT_TRUE(m_listener.message);
    EXPECT_EQ(m_listener.message->CommandId(), SASMessage::E_PARENTAL_CONTROL_INFO);
    EXPECT_EQ(m_listener.message->TransactionId(), 9U);
}

TEST_F(ASignal, OfADrmErrorKeepsItsMismatchedUnpacking) {
    g_test_expect_message("GLib", G_LOG_LEVEL_CRITICAL, "*GVariant format string*(iuii)*");
    g_test_expect_message("GLib", G_LOG_LEVEL_CRITICAL, "*valid_format_string*");
    const event_t event = Send("PluginEventDrmError", "(204, 5, 2, 'content', 'http://rights')");
    g_test_assert_expected_messages();
    EXPECT_EQ(std::tie(event.event, event.plugin_id), std::tuple(0, 0U));
    ASSERT_TRUE(m_listener.drmError);
    EXPECT_EQ(m_listener.drmError->contentId + m_listener.drmError->rightsIssuerUrl, "");
    EXPECT_EQ(m_listener.drmError->errorState, 0U);
}

TEST_F(ASignal, WithACodeOfARecordButNoRecordHasNone) {
    const event_t event = Send("PluginEventData", "(104, 0, 1234567, 1234567)");
    EXPECT_EQ(event.event, E_VBO_STREAM_EVENT);
    EXPECT_EQ(event.GetRecord<CDSMCCStreamEventData>(), nullptr);
    EXPECT_EQ(event.GetRecord<SASMessage>(), nullptr);
}

TEST_F(ASignal, OfAnotherNameIsOnlyLogged) {
    m_service.Emit("SomethingNew", "('text', int32 5)");
    m_service.Emit("SomethingNew", "('" + std::string(64 * 1024, 'x') + "',)");
    WaitForEarlierSignals();
    EXPECT_EQ(m_listener.events.size(), 1U);
    EXPECT_EQ(LogCapture::Count("DAEBrowserAPIWK received Signal: SomethingNew: ('text', 5)"), 1);
    EXPECT_EQ(LogCapture::Count("DAEBrowserAPIWK received Signal: SomethingNew: 65537 bytes"), 1);
}

// A middleware that was built from another description, or is broken: no event, one line.
TEST_F(ASignal, OfOtherTypesOrEndlessTextIsRefused) {
    const std::string endless = "'" + std::string(1024 * 1024 + 1, 'x') + "'";
    const auto signals = m_service.Signals();
    EXPECT_EQ(signals.size(), 9U);
    for (const auto& [name, good] : signals) {
        // Another type for each of them in turn, one too few, one too many, none.
        const GVariantPtr whole(g_variant_parse(nullptr, good.c_str(), nullptr, nullptr, nullptr));
        const size_t count = g_variant_n_children(whole.get());
        const auto with = [&](size_t length, size_t changed, const std::string& value) {
            std::string text = "(";
            for (size_t i = 0; i < length; ++i) {
                const GVariantPtr child(i < count ? g_variant_get_child_value(whole.get(), i) : nullptr);
                text += (i == changed ? value : GCharPtr(g_variant_print(child.get(), TRUE)).get()) + ", ";
            }
            return length == 0 ? "()" : text.substr(0, text.size() - (length == 1 ? 1 : 2)) + ")";
        };
        std::vector<std::string> bad = {with(count - 1, count, ""), with(count + 1, count, "uint32 7"), "()"};
        for (size_t i = 0; i < count; ++i) {
            bad.push_back(with(count, i, "(1, 'nested')"));
            const GVariantPtr child(g_variant_get_child_value(whole.get(), i));
            if (g_variant_is_of_type(child.get(), G_VARIANT_TYPE_STRING))
                bad.push_back(with(count, i, endless));
        }
        for (const std::string& values : bad) {
            LogCapture::Clear();
            m_listener.events.clear();
            m_service.EmitAnything(name, values);
            WaitForEarlierSignals();
            EXPECT_EQ(m_listener.events.size(), 1U) << name << values.substr(0, 100);
            EXPECT_EQ(LogCapture::Errors(), 1) << name << values.substr(0, 100);
        }
    }
    EXPECT_EQ(LogCapture::Count(
                  "org.vantrel.hbbtv.IDAEBrowserAPI.PlayReadyResponse refused: a text of 1048577 bytes"),
              1);
}

TEST_F(ASignal, WithoutASubscriberIsHandledAllTheSame) {
    m_client.UnsubscribeEvents(&m_listener);
    m_service.Emit("StreamEvent", "(0, 1, 'unheard', [1], 1)");
    m_service.Emit("PlayReadyResponse", "(1, 1, 'unheard')");
    EXPECT_TRUE(WaitFor([] {
        return LogCapture::Count(
                   "DAEBrowserAPIWK received Signal: PlayReadyResponse: (uint32 1, 1, 'unheard')") == 1;
    }));
    EXPECT_TRUE(m_listener.events.empty());
    m_client.UnsubscribeEvents(nullptr);
    EXPECT_EQ(LogCapture::Count("CDAEBrowserAPIWK::UnsubscribeEvents stop sending event to plugins"), 1);
}

}  // namespace
