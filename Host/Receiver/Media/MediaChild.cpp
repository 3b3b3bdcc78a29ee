#include "Host/Receiver/Media/MediaChild.h"

// The header of glibc 2.36 does not say that it is C.
extern "C" {
#include <sys/pidfd.h>
}
#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "Host/Receiver/Media/MediaWords.h"

namespace Receiver {

namespace {

// The program's end of the line; its own code knows the number.
constexpr int kLineInChild = 3;
constexpr guint kEndLimitSeconds = 1;

// HBBTV_MEDIA, else beside this program: in the build tree, or where both are installed.
std::string program() {
    if (const char* named = std::getenv("HBBTV_MEDIA"))
        return named;
    std::error_code error;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    const auto built = (folder / "../Media/hbbtv-media").lexically_normal();
    return std::filesystem::exists(built, error) ? built : folder / "hbbtv-media";
}

struct Line {
    Host::Descriptor ours;
    Host::Descriptor theirs;
};

Line makeLine(int type) {
    std::array<int, 2> ends{-1, -1};
    if (socketpair(AF_UNIX, type | SOCK_CLOEXEC, 0, ends.data()) != 0)
        g_warning("no film can be played: %s", g_strerror(errno));
    return {Host::Descriptor(ends[0]), Host::Descriptor(ends[1])};
}

void killNow(const Host::Descriptor& process) {
    if (process)
        (void)pidfd_send_signal(process.get(), SIGKILL, nullptr, 0);
}

}  // namespace

MediaChild::MediaChild(Host::GObjectHandle<GSubprocess> program, Host::Descriptor line)
    : m_program(std::move(program)),
      m_link(std::move(line), MediaLink::Writes::NeverWait,
             {[this](MediaMessage& message) {
                  if (message.is(MediaWords::Ready) && !m_process)
                      m_process = std::move(message.file);
                  const auto hear = m_callbacks.message;
                  hear(message);
              },
              [this] {
                  const auto end = m_callbacks.end;
                  end();
              }}) {}

MediaChild::~MediaChild() {
    // It sees the line closed. One that is stuck does not; killing one that has ended does nothing.
    g_timeout_add_seconds_full(
        G_PRIORITY_DEFAULT, kEndLimitSeconds,
        [](gpointer process) -> gboolean {
            killNow(*static_cast<Host::Descriptor*>(process));
            return G_SOURCE_REMOVE;
        },
        new Host::Descriptor(std::move(m_process)),
        [](gpointer process) { delete static_cast<Host::Descriptor*>(process); });
}

void MediaChild::send(const MediaWord& word, std::uint32_t number, GVariant* content) {
    if (!m_link.send(word, number, content))
        kill();
}

void MediaChild::kill() {
    // As long as it has not told of itself, it is the program that stands still.
    if (!m_process)
        g_subprocess_force_exit(m_program.get());
    killNow(m_process);
}

bool MediaChildren::prepare() {
    if (m_program)
        return true;
    auto [ours, theirs] = makeLine(SOCK_STREAM);
    if (!ours)
        return false;
    const auto name = program();
    std::vector<const char*> command = {name.c_str()};
    for (const auto& argument : m_arguments)
        command.push_back(argument.c_str());
    command.push_back(nullptr);
    // Standard output is the receiver's own.
    const Host::GObjectHandle<GSubprocessLauncher> launcher(
        g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_STDOUT_SILENCE));
    g_subprocess_launcher_take_fd(launcher.get(), theirs.release(), kLineInChild);
    Host::GErrorSlot error;
    m_program.reset(g_subprocess_launcher_spawnv(launcher.get(), command.data(), error.out()));
    if (!m_program) {
        g_warning("no film can be played: %s", error.message());
        return false;
    }
    const Host::GObjectHandle<GSocket> socket(g_socket_new_from_fd(ours.release(), nullptr));
    g_socket_set_blocking(socket.get(), FALSE);
    m_line.reset(G_UNIX_CONNECTION(g_socket_connection_factory_create_connection(socket.get())));
    return true;
}

std::unique_ptr<MediaChild> MediaChildren::take() {
    // Packets keep their borders, and one that is too long is cut off instead of filling the memory.
    auto [ours, theirs] = makeLine(SOCK_SEQPACKET);
    if (!ours)
        return nullptr;
    // A program that has ended meanwhile is started once more.
    if (!hand(theirs) && !hand(theirs))
        return nullptr;
    auto* program = G_SUBPROCESS(g_object_ref(m_program.get()));
    return std::make_unique<MediaChild>(Host::GObjectHandle<GSubprocess>(program), std::move(ours));
}

bool MediaChildren::hand(const Host::Descriptor& line) {
    if (!prepare())
        return false;
    Host::GErrorSlot error;
    if (g_unix_connection_send_fd(m_line.get(), line.get(), nullptr, error.out()))
        return true;
    g_warning("the process for films takes none any more: %s", error.message());
    g_subprocess_force_exit(m_program.get());
    m_program.reset();
    m_line.reset();
    return false;
}

}  // namespace Receiver
