#include <algorithm>
#include <climits>
#include <cstdint>
#include <future>
#include <thread>

#include <gmock/gmock.h>

#include "IPC/DBUS/Src/DSMCCWK_DBus.h"
#include "Tests/Bus/FakeService.h"

namespace {

struct Response {
    uint32_t handle;
    std::string url;
    std::string bytes;
    long length;
    bool status;
    auto operator<=>(const Response&) const = default;
};

// How many bytes the response under test really carries, which the callback cannot know from its length.
size_t s_carried = 0;
std::vector<Response> s_responses;
std::thread::id s_thread;

bool Keep(uint32_t handle, const char* url, const uint8_t* data, long length, bool status) {
    const size_t read = std::min(s_carried, static_cast<size_t>(length));
    s_responses.push_back({handle, url, {data, data + read}, length, status});
    s_thread = std::this_thread::get_id();
    return true;
}

bool NeverCalled(uint32_t, const char*, const uint8_t*, long, bool) {
    ADD_FAILURE() << "the first callback receives all responses";
    return false;
}

Response Receive(FakeService& service, const std::string& values, size_t carried) {
    s_responses.clear();
    s_carried = carried;
    service.Emit("FileResponse", values);
    EXPECT_TRUE(WaitFor([] { return !s_responses.empty(); }));
    return s_responses.empty() ? Response{} : s_responses.front();
}

// For a response that there is no callback for: waits until it has been here.
void ExpectNothingFrom(FakeService& service, const std::string& values) {
    const GObjectPtr<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
    bool arrived = false;
    const guint subscription = g_dbus_connection_signal_subscribe(
        bus.get(), nullptr, nullptr, "FileResponse", nullptr, nullptr, G_DBUS_SIGNAL_FLAGS_NONE,
        [](GDBusConnection*, const gchar*, const gchar*, const gchar*, const gchar*, GVariant*,
           gpointer seen) { *static_cast<bool*>(seen) = true; },
        &arrived, nullptr);
    service.Emit("FileResponse", values);
    EXPECT_TRUE(WaitFor([&] { return arrived; }));
    EXPECT_TRUE(s_responses.empty());
    g_dbus_connection_signal_unsubscribe(bus.get(), subscription);
}

// The client keeps its proxy and its callback for ever, so its life is told in one piece.
TEST(ADsmccClient, HandsEveryResponseToTheFirstCallback) {
    EXPECT_FALSE(s_soupDsmccFileRequest(1, "dvb://before", Keep));
    EXPECT_EQ(LogCapture::Count("s_soupDsmccFileRequest dvb://before FAILED"), 1);

    FakeService service("DSMCC");
    InitDSMCCDBus();
    ExpectNothingFrom(service, "(1, 'dvb://unasked', [1], 1, true)");
    service.Reply("FileRequest", "(true,)");
    EXPECT_TRUE(s_soupDsmccFileRequest(2, "dvb://1.2.3/index.html", Keep));
    EXPECT_TRUE(s_soupDsmccFileRequest(0xFFFFFFFFU, "dvb://\xff", NeverCalled));
    EXPECT_THAT(service.TakeCalls(), testing::ElementsAre("FileRequest (2, 'dvb://1.2.3/index.html')",
                                                          "FileRequest (4294967295, 'dvb://\uFFFD')"));

    using namespace std::string_literals;
    EXPECT_EQ(Receive(service, "(4294967295, 'dvb://b', [0x00, 0xff, 0x0a], 3, true)", 3),
              (Response{0xFFFFFFFFU, "dvb://b", "\x00\xff\x0a"s, 3, true}));
    EXPECT_EQ(Receive(service, "(2, 'dvb://empty', [], 0, true)", 0),
              (Response{2, "dvb://empty", "", 0, true}));
    EXPECT_EQ(
        Receive(service, "(2, 'dvb://lies', [0x41], 4000000000, false)", 1),
        (Response{2, "dvb://lies", "A", static_cast<long>(std::min<int64_t>(4000000000, LONG_MAX)), false}));
    EXPECT_EQ(Receive(service, "(2, 'dvb://modest', [0x41, 0x42], 1, true)", 2),
              (Response{2, "dvb://modest", "A", 1, true}));

    // The client keeps no requests: one handle may stand for two, and responses may come for none.
    EXPECT_TRUE(s_soupDsmccFileRequest(9, "dvb://first", Keep));
    EXPECT_TRUE(s_soupDsmccFileRequest(9, "dvb://second", Keep));
    s_responses.clear();
    s_carried = 1;
    service.Emit("FileResponse", "(9, 'dvb://second', [0x32], 1, true)");
    service.Emit("FileResponse", "(9, 'dvb://first', [0x31], 1, true)");
    service.Emit("FileResponse", "(10, '', [0x30], 1, true)");
    EXPECT_TRUE(WaitFor([] { return s_responses.size() == 3; }));
    EXPECT_THAT(s_responses, testing::ElementsAre(Response{9, "dvb://second", "2", 1, true},
                                                  Response{9, "dvb://first", "1", 1, true},
                                                  Response{10, "", "0", 1, true}));

    // A loader may ask from its own thread; the response comes to the thread that connected.
    EXPECT_TRUE(std::async(std::launch::async, [] {
                    return s_soupDsmccFileRequest(11, "dvb://thread", Keep);
                }).get());
    EXPECT_EQ(Receive(service, "(11, 'dvb://thread', [0x54], 1, true)", 1).bytes, "T");
    EXPECT_EQ(s_thread, std::this_thread::get_id());

    service.Reply("FileRequest", "(false,)");
    EXPECT_FALSE(s_soupDsmccFileRequest(3, "dvb://refused", Keep));
    service.Fail("FileRequest", "no carousel");
    EXPECT_FALSE(s_soupDsmccFileRequest(4, "dvb://failed", Keep));
    EXPECT_EQ(
        LogCapture::Count(
            "dsmcc_call_file_request_sync failed GDBus.Error:org.freedesktop.DBus.Error.Failed: no carousel"),
        1);
    EXPECT_EQ(LogCapture::Count("s_soupDsmccFileRequest dvb://failed FAILED"), 1);
}

}  // namespace
