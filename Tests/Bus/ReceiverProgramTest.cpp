// hbbtv-receiver as a program: its arguments, its refusals, its exit codes.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Bus/ReceiverFixture.h"

namespace {

using ReceiverTest::runReceiver;
using ReceiverTest::writeFile;
using testing::HasSubstr;

TEST(TheReceiverProgram, RefusesBadArgumentsWithExitCodeTwo) {
    const std::vector<std::vector<std::string>> badArguments = {
        {}, {"--scenario"}, {"--scenario="}, {"--scnario", "a.json"}, {"--scenario", "a.json", "b.json"}};
    for (const auto& arguments : badArguments) {
        const auto ended = runReceiver(arguments);
        EXPECT_EQ(ended.exitCode, 2) << testing::PrintToString(arguments);
        EXPECT_THAT(ended.errors, HasSubstr("hbbtv-receiver: "));
        EXPECT_EQ(ended.output, "");
    }
    EXPECT_THAT(runReceiver({"-h"}).output, HasSubstr("--scenario=FILE"));
    EXPECT_EQ(runReceiver({"--version"}).output, "hbbtv-receiver " HBBTV_VERSION "\n");
}

TEST(TheReceiverProgram, RefusesAScenarioWithFilePlaceAndReason) {
    struct Refusal {
        std::string scenario;
        std::string message;
    };
    const std::vector<Refusal> refusals = {
        {"", "line 1, column 1: syntax error"},
        {"{\n  \"keys\": {\n    \"mask\" 3\n  }\n}", "line 3, column 12: syntax error"},
        {"[]", "the whole document: must be an object, is array"},
        {"{\"keys\": {\"mask\": 1, \"mask\": 2}}", "the key \"mask\" is given twice in one object"},
        {"{\"keys\": {\"mask\": \"1\"}}", "/keys/mask: must be a whole number from 0 to 2047, is string"},
        {"{\"keys\": {\"mask\": 1.5}}", "/keys/mask: must be a whole number from 0 to 2047, is 1.5"},
        {"{\"keys\": {\"mask\": 18446744073709551615}}", "/keys/mask: must be a whole number"},
        {"{\"keys\": {\"maximum\": 3, \"mask\": 4}}", "/keys/mask: has bits that the maximum does not have"},
        {"{\"locale\": {\"country\": true}}", "/locale/country: must be a text, is boolean"},
        {"{\"broadcast\": {\"channels\": [{\"id\": 1, \"name\": \"A\", \"id_type\": \"ID_DVB_T\", \"a/b\": "
         "1}]}}",
         "/broadcast/channels/0/a~1b: unknown key"},
        {"{\"broadcast\": {\"channels\": [{\"id\": 1, \"name\": \"A\", \"id_type\": \"ID_DVB_T\"},"
         "{\"id\": 1, \"name\": \"B\", \"id_type\": \"ID_DVB_T\"}]}}",
         "/broadcast/channels/1: another channel has the id 1"},
        {"{\"broadcast\": {\"current_channel\": 5}}",
         "/broadcast/current_channel: there is no channel with the id 5"},
        {"{\"stream_events\": [{\"url\": \"*\", \"name\": \"e\", \"data\": \"0g\"}]}",
         "/stream_events/0/data: must be bytes as pairs of hexadecimal digits"},
        {"{\"carousel\": {\"folder\": \"nowhere\"}}", "/carousel/folder: there is no folder"},
    };
    for (const auto& [scenario, message] : refusals) {
        const auto file = writeFile("refused.json", scenario);
        const auto ended = runReceiver({"--scenario", file});
        EXPECT_EQ(ended.exitCode, 1) << scenario;
        EXPECT_THAT(ended.errors, HasSubstr("hbbtv-receiver: " + file + ": ")) << scenario;
        EXPECT_THAT(ended.errors, HasSubstr(message)) << scenario;
        EXPECT_EQ(ended.output, "") << scenario;
    }
    const auto missing = runReceiver({"--scenario", "/nowhere/at-all.json"});
    EXPECT_EQ(missing.exitCode, 1);
    EXPECT_THAT(missing.errors, HasSubstr("/nowhere/at-all.json: cannot open it: No such file or directory"));
    const auto folder = runReceiver({"--scenario", "/"});
    EXPECT_EQ(folder.exitCode, 1);
    EXPECT_THAT(folder.errors, HasSubstr("hbbtv-receiver: /: cannot read it: Is a directory"));
}

TEST(TheReceiverProgram, SaysThatThereIsNoBus) {
    const auto ended = runReceiver({"--scenario", HBBTV_DEFAULT_SCENARIO},
                                   {{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere/bus"}});
    EXPECT_EQ(ended.exitCode, 1);
    EXPECT_THAT(ended.errors, HasSubstr("there is no session bus: "));
    EXPECT_EQ(ended.output, "");
}

class TheReceiverProgramBesideAnother : public ReceiverTest::RunningReceiver {};

TEST_F(TheReceiverProgramBesideAnother, SaysThatTheNamesHaveAnOwnerAndLeavesTheOtherAlone) {
    const auto second = runReceiver({"--scenario", HBBTV_DEFAULT_SCENARIO});
    EXPECT_EQ(second.exitCode, 1);
    EXPECT_THAT(second.errors, HasSubstr("the name org.vantrel.hbbtv.IDAEBrowserAPI already has an owner"));
    EXPECT_EQ(second.output, "");
    EXPECT_EQ(call("IDAEBrowserAPI.GetCountryID").text(), "('DEU',)");
}

}  // namespace
