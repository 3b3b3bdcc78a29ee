// Messages to DRM systems and their answers, from both kinds of systems.

#include "API/Src/IPRResponse.h"
#include "Tests/Unit/TelevisionPage.h"

namespace {

using namespace std::string_literals;
using testing::ElementsAre;

constexpr uint8_t kReply = 2;
constexpr uint8_t kSystemInfo = 5;
constexpr uint8_t kData = 1;
constexpr uint8_t kStatus = 8;

class ADrmAgent : public TelevisionPage {
 protected:
    ADrmAgent() {
        api.Reply("IsProfileSupported", "(true,)");
        Eval(R"(var makeAgent = () => PrivateObjectFactory.createDrmAgentObject(), agent = makeAgent();
                agent.onDRMMessageResult = (id, ...rest) => log.push('result', typeof id, id, ...rest);
                agent.onDRMSystemMessage = (...all) => log.push('system', ...all);)");
        (void)api.TakeCalls();
    }

    // Sends a message whose transaction the receiver gives this id.
    std::string Send(const std::string& transaction, const std::string& type = "application/x-drm") {
        api.Reply("SendDRMMessage", "(" + transaction + ",)");
        return Value("agent.sendDRMMessage('" + type + "', 'message', 'urn:dvb:casystemid:19219')");
    }
    static void Respond(uint32_t transaction, int32_t code, const std::string& message) {
        const IPRResponse response{transaction, code, message};
        CDAEBrowserAPIWK::GetInstance()->SendPlayReadyDataToPlugins(&response);
    }
    // A message of the module; items are a datatype and bytes.
    static void Module(uint8_t command, uint32_t transaction,
                       const std::vector<std::pair<uint8_t, std::string>>& items) {
        std::string bytes = {static_cast<char>(command), '\x4B', '\x13'};
        for (int shift = 24; shift >= 0; shift -= 8)
            bytes += static_cast<char>(transaction >> shift);
        bytes += static_cast<char>(items.size());
        for (const auto& [datatype, content] : items) {
            bytes += static_cast<char>(datatype);
            bytes += static_cast<char>(content.size() >> 8);
            bytes += static_cast<char>(content.size());
            bytes += content;
        }
        CDAEBrowserAPIWK::GetInstance()->SendSASDataToPlugins(reinterpret_cast<const uint8_t*>(bytes.data()),
                                                              bytes.size());
    }
};

TEST_F(ADrmAgent, SendsThreeTextsAndGivesTheIdAsText) {
    EXPECT_EQ(Send("7"), "string 7");
    EXPECT_EQ(Send("-7"), "string -7");
    EXPECT_THAT(api.TakeCalls(),
                ElementsAre("SendDRMMessage ('application/x-drm', 'message', 'urn:dvb:casystemid:19219')",
                            "SendDRMMessage ('application/x-drm', 'message', 'urn:dvb:casystemid:19219')"));
    for (const char* arguments : {"'a', 'b'", "'a', 'b', null", "1, 'b', 'c'", "'a', 'b', 'c', 'd'"})
        EXPECT_THAT(Value("agent.sendDRMMessage(" + std::string(arguments) + ")"),
                    testing::StartsWith("throws"));
    api.Fail("SendDRMMessage", "no such system");
    EXPECT_EQ(Value("agent.sendDRMMessage('a', 'b', 'c')"), "null");
}

TEST_F(ADrmAgent, TellsAPlayReadyAnswerOnceToWhoeverSentTheMessage) {
    Eval(R"(var other = makeAgent(); other.onDRMMessageResult = () => log.push('other');
            agent.addEventListener('DRMMessageResult', e => log.push(e.msgID, e.resultMsg, e.resultCode));)");
    (void)Send("9");
    Respond(8, 0, "of another page");
    EXPECT_EQ(Log(), "");
    Respond(9, 3, "unknown \xff type");
    EXPECT_EQ(Log(), "result,string,9,unknown \uFFFD type,3,9,unknown \uFFFD type,3");
    Respond(9, 0, "again");
    EXPECT_EQ(Log(), "");
    // Ids are signed in the reply and unsigned in the answer.
    (void)Send("-9");
    Respond(4294967287U, 0, "");
    EXPECT_EQ(Log(), "result,string,-9,,0,-9,,0");
}

TEST_F(ADrmAgent, TellsTheReplyOfAModuleInTheFormOfTheMessage) {
    (void)Send("5");
    Module(kReply, 6, {{kData, "of another page"}});
    Module(1, 5, {{kData, "no reply"}});
    EXPECT_EQ(Log(), "");
    Module(kReply, 5, {{kStatus, "\x04"}, {kData, "h\u00e9\xff!"}});
    EXPECT_EQ(Log(), "result,string,5,h\u00e9!,4");
    Module(kReply, 5, {{kData, "again"}});
    EXPECT_EQ(Log(), "");

    (void)Send("6", "application/vnd.oipf.cspg-hexbinary");
    Module(kReply, 6, {{kData, "\0\x7f\xff"s}});
    EXPECT_EQ(Log(), "result,string,6,007FFF,0") << "no status is a success";

    const std::pair<std::string, std::string> statuses[] = {
        {"\x06", "6"}, {"\x07", "1"}, {"\xff", "1"}, {"", "1"}, {"\0\0"s, "1"}};
    for (const auto& [status, code] : statuses) {
        (void)Send("11");
        Module(kReply, 11, {{kStatus, status}});
        EXPECT_EQ(Log(), "result,string,11,," + code);
    }
}

TEST_F(ADrmAgent, TellsEveryAgentWhatAModuleSaysByItself) {
    Eval(R"(var other = makeAgent();
            other.addEventListener('DRMSystemMessage', e => log.push('other', e.msg, e.DRMSystemID));)");
    Module(kSystemInfo, 5, {{kData, "Subscription ends"}});
    Module(kSystemInfo, 5, {});
    const std::string log = "," + Log();
    for (const std::string agent : {",system", ",other"})
        for (const std::string said : {",Subscription ends", ","})
            EXPECT_THAT(log, testing::HasSubstr(agent + said + ",urn:dvb:casystemid:19219"));
}

TEST_F(ADrmAgent, MayGoBetweenMessageAndAnswer) {
    (void)Send("5");
    Eval(R"(agent.onDRMMessageResult = () => { agent = null; collect(); log.push('gone'); };
            agent.onDRMSystemMessage = null)");
    Module(kReply, 5, {{kData, "x"}});
    EXPECT_EQ(Log(), "gone");
    Eval("makeAgent().sendDRMMessage('a', 'b', 'c'); collect()");
    Module(kReply, 5, {{kData, "x"}});
    Respond(5, 0, "x");
    EXPECT_EQ(Log(), "");
}

TEST_F(ADrmAgent, IsRefusedWhereTheReceiverHasNone) {
    api.Reply("IsProfileSupported", "(false,)");
    EXPECT_EQ(Thrown("makeAgent()"), "TypeError|application/oipfdrmagent is not supported");
    EXPECT_EQ(Thrown("PrivateObjectFactory.createSearchManagerObject()"),
              "TypeError|application/oipfSearchManager is not supported");
    EXPECT_THAT(api.TakeCalls(), ElementsAre("IsProfileSupported (0, 0x01, 0x02, 0x01)",
                                             "IsProfileSupported (0, 0x01, 0x02, 0x01)"));
}

}  // namespace
