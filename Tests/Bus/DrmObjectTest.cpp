// Messages to DRM systems from a page to the simulated receiver and back.

#include <string>

#include <gmock/gmock.h>

#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Bus/ReceiverFixture.h"
#include "Tests/Unit/FakeBrowser.h"

namespace {

class APageWithADrmAgent : public ReceiverTest::RunningReceiver {
 protected:
    [[nodiscard]] std::string scenario() const override {
        return ReceiverTest::writeFile("drm.json", R"({
          "broadcast": {"current_channel": 1, "channels": [{"id": 1, "name": "One", "id_type": "ID_DVB_T"}]},
          "drm": {"systems": [
            {"id": "slow", "result_code": 4, "result_message": "agree first", "reply_ms": 300},
            {"id": "silent", "reply_ms": 3600000},
            {"id": "fast", "result_message": "done"}]},
          "capabilities": {"profiles": [{"profile": 0, "major": 1, "minor": 2, "micro": 1}]}
        })");
    }
    void SetUp() override {
        RunningReceiver::SetUp();
        // The client outlives the receiver of the test before; it learns in the main loop who has the name
        // now.
        ASSERT_TRUE(WaitFor([] {
            uint32_t id = 0;
            return CDAEBrowserAPIWK::GetInstance()->CurrentChannel(id);
        }));
        page.main.Eval(
            "var log = [], sent = []; var agent = PrivateObjectFactory.createDrmAgentObject(); "
            "agent.onDRMMessageResult = function(id, message, code) { "
            "log.push(sent.indexOf(id) + ' ' + message + ' ' + code); }; "
            "agent.onDRMSystemMessage = function(m, system) { log.push(m + ' ' + system); }; "
            "function send(system) { sent.push(agent.sendDRMMessage('a/b', 'm', system)); }");
    }
    void TearDown() override {
        page.main.Navigate();
        RunningReceiver::TearDown();
    }
    [[nodiscard]] testing::AssertionResult Logs(const std::string& expected) {
        if (WaitFor([&] { return page.main.Eval("log.join()") == expected; }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << page.main.Eval("log.join()") << ", not " << expected;
    }

    FakePage page;
};

TEST_F(APageWithADrmAgent, HearsEachAnswerWhenItComes) {
    page.main.Eval(
        "send('slow'); send('fast'); send('unknown'); log.push(typeof sent[0], sent[0] !== sent[1])");
    EXPECT_TRUE(Logs("string,true,1 done 0,2  5,0 agree first 4"));
}

TEST_F(APageWithADrmAgent, HearsAModuleAnswerItsMessageAndSpeakByItself) {
    page.main.Eval("send('silent')");
    ASSERT_TRUE(control("EmitSignal",
                        "('SASMessage', <([byte 2, 0x4b, 0x13, 0, 0, 0, 1, 2, 8, 0, 1, 3, 1, 0, 2, "
                        "0x4f, 0x4b],)>)")
                    .value);
    ASSERT_TRUE(
        control("EmitSignal", "('SASMessage', <([byte 5, 0x4b, 0x13, 0, 0, 0, 0, 1, 1, 0, 1, 0x21],)>)")
            .value);
    EXPECT_TRUE(Logs("0 OK 3,! urn:dvb:casystemid:19219"));
}

}  // namespace
