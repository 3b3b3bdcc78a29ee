// hbbtv-receiver as a program: its arguments, its refusals, its exit codes.

#include "Tests/Bus/ReceiverFixture.h"

namespace {

using ReceiverTest::runReceiver;
using ReceiverTest::writeFile;
using testing::HasSubstr;

void expectRefusal(const ReceiverTest::Ended& ended, int exitCode, const std::string& message) {
    EXPECT_EQ(ended.exitCode, exitCode);
    EXPECT_THAT(ended.errors, HasSubstr(message));
    EXPECT_EQ(ended.output, "");
}

TEST(TheReceiverProgram, RefusesBadArgumentsWithExitCodeTwo) {
    const std::vector<std::vector<std::string>> badArguments = {
        {}, {"--scenario"}, {"--scenario="}, {"--scnario", "a.json"}, {"--scenario", "a.json", "b.json"}};
    for (const auto& arguments : badArguments) {
        SCOPED_TRACE(testing::PrintToString(arguments));
        expectRefusal(runReceiver(arguments), 2, "hbbtv-receiver: ");
    }
    EXPECT_THAT(runReceiver({"-h"}).output, HasSubstr("--scenario=FILE"));
    EXPECT_EQ(runReceiver({"--version"}).output, "hbbtv-receiver " HBBTV_VERSION "\n");
}

TEST(TheReceiverProgram, RefusesAScenarioWithFilePlaceAndReason) {
    const std::vector<std::pair<std::string, std::string>> refusals = {
        {"", "line 1, column 1: syntax error"},
        {"{\n  \"keys\": {\n    \"mask\" 3\n  }\n}", "line 3, column 12: syntax error"},
        {"[]", "the whole document: must be an object, is array"},
        {R"({"keys": {"mask": 1, "mask": 2}})", R"(the key "mask" is given twice in one object)"},
        {R"({"keys": {"mask": "1"}})", "/keys/mask: must be a whole number from 0 to 2047, is string"},
        {R"({"keys": {"mask": 1.5}})", "/keys/mask: must be a whole number from 0 to 2047, is 1.5"},
        {R"({"keys": {"mask": 18446744073709551615}})", "/keys/mask: must be a whole number"},
        {R"({"keys": {"maximum": 3, "mask": 4}})", "/keys/mask: has bits that the maximum does not have"},
        {R"({"locale": {"country": true}})", "/locale/country: must be a text, is boolean"},
        {R"({"broadcast": {"channels": [{"id": 1, "name": "A", "id_type": "ID_DVB_T", "a/b": 1}]}})",
         "/broadcast/channels/0/a~1b: unknown key"},
        {R"({"broadcast": {"channels": [{"id": 1, "name": "A", "id_type": "ID_DVB_T"},
                                          {"id": 1, "name": "B", "id_type": "ID_DVB_T"}]}})",
         "/broadcast/channels/1: another channel has the id 1"},
        {R"({"broadcast": {"current_channel": 5}})",
         "/broadcast/current_channel: there is no channel with the id 5"},
        {R"({"stream_events": [{"url": "*", "name": "e", "data": "0g"}]})",
         "/stream_events/0/data: must be bytes as pairs of hexadecimal digits"},
        {R"({"media": {"player": "both"}})", "/media/player"},
        {R"({"carousel": {"folder": "nowhere"}})", "/carousel/folder: there is no folder"},
    };
    for (const auto& [scenario, message] : refusals) {
        const auto file = writeFile("refused.json", scenario);
        SCOPED_TRACE(scenario);
        const auto ended = runReceiver({"--scenario", file});
        expectRefusal(ended, 1, "hbbtv-receiver: " + file + ": ");
        EXPECT_THAT(ended.errors, HasSubstr(message));
    }
    expectRefusal(runReceiver({"--scenario", "/nowhere/at-all.json"}), 1,
                  "/nowhere/at-all.json: cannot open it: No such file or directory");
    expectRefusal(runReceiver({"--scenario", "/"}), 1, "hbbtv-receiver: /: cannot read it: Is a directory");
}

TEST(TheReceiverProgram, SaysThatThereIsNoBus) {
    expectRefusal(runReceiver({"--scenario", HBBTV_DEFAULT_SCENARIO},
                              {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus"}}),
                  1, "there is no session bus: ");
}

class TheReceiverProgramBesideAnother : public ReceiverTest::RunningReceiver {};

TEST_F(TheReceiverProgramBesideAnother, SaysThatTheNamesHaveAnOwnerAndLeavesTheOtherAlone) {
    expectRefusal(runReceiver({"--scenario", HBBTV_DEFAULT_SCENARIO}), 1,
                  "the name org.vantrel.hbbtv.IDAEBrowserAPI already has an owner");
    EXPECT_EQ(ask("IDAEBrowserAPI.GetCountryID"), "('DEU',)");
}

}  // namespace
