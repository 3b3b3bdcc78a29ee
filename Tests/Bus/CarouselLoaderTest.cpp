// How the desktop's web process reads files for the shell: through the client, never past what has come. The
// sanitizers look on.
#include <sys/socket.h>

#include <array>

#include <gmock/gmock.h>

#include "Host/Inc/ShellChannel.h"
#include "Host/WebProcess/CarouselLoader.h"
#include "IPC/DBUS/Src/DSMCCWK_DBus.h"
#include "Tests/Bus/FakeService.h"

namespace {

using namespace Host;
using ShellChannel::FileOutcome;
using testing::ElementsAre;

GObjectHandle<GDBusConnection> ConnectionOver(int descriptor) {
    GErrorSlot error;
    const GObjectHandle<GSocket> socket(g_socket_new_from_fd(descriptor, error.out()));
    const GObjectHandle<GSocketConnection> stream(
        g_socket_connection_factory_create_connection(socket.get()));
    // Both ends are ours: no handshake.
    return GObjectHandle<GDBusConnection>(g_dbus_connection_new_sync(
        G_IO_STREAM(stream.get()), nullptr, G_DBUS_CONNECTION_FLAGS_NONE, nullptr, nullptr, error.out()));
}

struct Answer {
    bool here = false;
    FileOutcome outcome = FileOutcome::Refused;
    std::string bytes;
};

std::string TextOf(const Answer& answer) {
    static constexpr std::array kNames = {"read", "missing", "refused", "incomplete"};
    return std::string(kNames.at(static_cast<size_t>(answer.outcome))) + ":" + answer.bytes;
}

// The end of the connection at which the shell is.
class Asker {
 public:
    explicit Asker(GObjectHandle<GDBusConnection> connection) : m_connection(std::move(connection)) {}

    std::shared_ptr<Answer> Read(guint handle, const char* url) {
        auto answer = std::make_shared<Answer>();
        g_dbus_connection_call(m_connection.get(), nullptr, ShellChannel::kPath,
                               ShellChannel::kFilesInterface, ShellChannel::kReadFile,
                               g_variant_new("(us)", handle, url), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
                               nullptr, OnAnswer, new std::shared_ptr<Answer>(answer));
        return answer;
    }

    void Abandon(guint handle) {
        GErrorSlot error;
        const GVariantHandle reply(g_dbus_connection_call_sync(
            m_connection.get(), nullptr, ShellChannel::kPath, ShellChannel::kFilesInterface,
            ShellChannel::kAbandonFile, g_variant_new("(u)", handle), nullptr, G_DBUS_CALL_FLAGS_NONE, -1,
            nullptr, error.out()));
        EXPECT_TRUE(reply) << error.message();
    }

 private:
    static void OnAnswer(GObject* connection, GAsyncResult* result, gpointer data) {
        const std::unique_ptr<std::shared_ptr<Answer>> answer(static_cast<std::shared_ptr<Answer>*>(data));
        GErrorSlot error;
        const GVariantHandle reply(
            g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, error.out()));
        ASSERT_TRUE(reply) << error.message();
        guchar outcome = 0;
        GVariant* bytes = nullptr;
        g_variant_get(reply.get(), "(y@ay)", &outcome, &bytes);
        const GVariantHandle owned(bytes);
        **answer = {true,
                    static_cast<FileOutcome>(outcome),
                    {static_cast<const char*>(g_variant_get_data(bytes)), g_variant_get_size(bytes)}};
    }

    GObjectHandle<GDBusConnection> m_connection;
};

// The loader and the client last until the process ends, so their life is told in one piece.
TEST(ACarouselLoader, AnswersEachRequestWithWhatHasComeForIt) {
    FakeService service("DSMCC");
    service.Reply("FileRequest", "(true,)");
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    static auto* const s_webProcess = ConnectionOver(ends[0]).release();
    static auto* const s_loader = new WebProcess::CarouselLoader;
    EXPECT_FALSE(s_loader->serves());
    s_loader->initialiseWith(InitDSMCCDBus);
    s_loader->serve(s_webProcess, s_soupDsmccFileRequest);
    ASSERT_TRUE(s_loader->serves());
    Asker shell(ConnectionOver(ends[1]));

    // Waits until the service has been asked, then has it answer.
    const auto read = [&](guint handle, std::initializer_list<const char*> responses) {
        const auto answer = shell.Read(handle, "dvb://a");
        EXPECT_TRUE(WaitFor([&] { return !service.TakeCalls().empty(); }));
        for (const char* response : responses)
            service.Emit("FileResponse", response);
        EXPECT_TRUE(WaitFor([&] { return answer->here; }));
        return TextOf(*answer);
    };
    EXPECT_EQ(read(1, {"(1, 'dvb://a', [0x41, 0x42], 2, true)"}), "read:AB");
    EXPECT_EQ(read(2, {"(2, 'dvb://a', [0x41, 0x42], 1, true)"}), "read:A");
    EXPECT_EQ(read(3, {"(3, 'dvb://a', [], 0, true)"}), "read:");
    EXPECT_EQ(read(4, {"(4, 'dvb://a', [0x41], 1, false)"}), "missing:");
    EXPECT_EQ(read(5, {"(5, 'dvb://a', [0x41], 2, true)"}), "incomplete:");
    EXPECT_EQ(read(6, {"(6, 'dvb://a', [], 4294967295, true)"}), "incomplete:");
    // What a later response carries does not count for an earlier one.
    EXPECT_EQ(read(7, {"(7, 'dvb://a', [0x41], 4, true)", "(7, 'dvb://a', [1, 2, 3, 4], 4, true)"}),
              "incomplete:");
    // Files of other processes, and of other requests.
    EXPECT_EQ(read(8, {"(9, 'dvb://a', [0x58], 1, true)", "(8, 'dvb://b', [0x58, 0x58], 2, true)",
                       "(8, 'dvb://a', [0x41], 1, true)"}),
              "read:A");

    // Answers come in any order; a handle that is in use is refused; what is given up is forgotten.
    const auto slow = shell.Read(10, "dvb://slow");
    const auto quick = shell.Read(11, "dvb://quick");
    const auto again = shell.Read(10, "dvb://again");
    EXPECT_TRUE(WaitFor([&] { return again->here; }));
    EXPECT_EQ(TextOf(*again), "refused:");
    EXPECT_THAT(service.TakeCalls(),
                ElementsAre("FileRequest (10, 'dvb://slow')", "FileRequest (11, 'dvb://quick')"));
    service.Emit("FileResponse", "(11, 'dvb://quick', [0x51], 1, true)");
    EXPECT_TRUE(WaitFor([&] { return quick->here; }));
    EXPECT_EQ(TextOf(*quick), "read:Q");
    EXPECT_FALSE(slow->here);
    shell.Abandon(10);
    shell.Abandon(10);
    EXPECT_EQ(read(10, {"(10, 'dvb://slow', [0x58], 1, true)", "(10, 'dvb://a', [0x41], 1, true)"}),
              "read:A");

    service.Reply("FileRequest", "(false,)");
    const auto refused = shell.Read(12, "dvb://refused");
    EXPECT_TRUE(WaitFor([&] { return refused->here; }));
    EXPECT_EQ(TextOf(*refused), "refused:");
}

}  // namespace
