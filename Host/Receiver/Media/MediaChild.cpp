#include "Host/Receiver/Media/MediaChild.h"

#include <sys/socket.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "Host/Receiver/Media/MediaWords.h"

namespace Receiver {

namespace {

// The program's end of the line; its own code knows the number.
constexpr int lineInChild = 3;
constexpr guint endLimitSeconds = 1;

// HBBTV_MEDIA, else beside this program: in the build tree, or where both are installed.
std::string program() {
    if (const char* named = std::getenv("HBBTV_MEDIA"))
        return named;
    std::error_code error;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
    const auto built = (folder / "../Media/hbbtv-media").lexically_normal();
    return std::filesystem::exists(built, error) ? built : folder / "hbbtv-media";
}

}  // namespace

std::unique_ptr<MediaChild> MediaChild::start(const std::vector<std::string>& arguments) {
    // Packets keep their borders, and one that is too long is cut off instead of filling the memory.
    std::array<int, 2> ends{};
    if (socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        g_warning("no film can be played: %s", g_strerror(errno));
        return nullptr;
    }
    Host::Descriptor ours(ends[0]);
    Host::Descriptor theirs(ends[1]);
    const auto name = program();
    std::vector<const char*> command = {name.c_str()};
    for (const auto& argument : arguments)
        command.push_back(argument.c_str());
    command.push_back(nullptr);
    // Standard output is the receiver's own.
    const Host::GObjectHandle<GSubprocessLauncher> launcher(
        g_subprocess_launcher_new(G_SUBPROCESS_FLAGS_STDOUT_SILENCE));
    g_subprocess_launcher_take_fd(launcher.get(), theirs.release(), lineInChild);
    Host::GErrorSlot error;
    Host::GObjectHandle<GSubprocess> process(
        g_subprocess_launcher_spawnv(launcher.get(), command.data(), error.out()));
    if (!process) {
        g_warning("no film can be played: %s", error.message());
        return nullptr;
    }
    return std::unique_ptr<MediaChild>(new MediaChild(std::move(process), std::move(ours)));
}

MediaChild::MediaChild(Host::GObjectHandle<GSubprocess> process, Host::Descriptor line)
    : m_process(std::move(process)),
      m_link(std::move(line), MediaLink::Writes::NeverWait,
             {[this](MediaMessage& message) {
                  m_ready = true;
                  if (const auto hear = m_callbacks.message)
                      hear(message);
              },
              [this] {
                  if (const auto end = m_callbacks.end)
                      end();
              }}) {}

MediaChild::~MediaChild() {
    // It sees the line closed. One that is stuck does not; killing one that has ended does nothing.
    g_timeout_add_seconds_full(
        G_PRIORITY_DEFAULT, endLimitSeconds,
        [](gpointer process) -> gboolean {
            g_subprocess_force_exit(G_SUBPROCESS(process));
            return G_SOURCE_REMOVE;
        },
        m_process.release(), g_object_unref);
}

void MediaChild::send(const MediaWord& word, std::uint32_t number, GVariant* content) {
    if (!m_link.send(word, number, content))
        kill();
}

void MediaChild::kill() {
    g_subprocess_force_exit(m_process.get());
}

void MediaChildren::prepare() {
    if (m_spare == nullptr)
        m_spare = MediaChild::start(m_arguments);
    if (m_spare != nullptr)
        m_spare->listen({nullptr, [this] {
                             g_warning("a process for films has ended before it had one");
                             m_spare.reset();
                         }});
}

std::unique_ptr<MediaChild> MediaChildren::take() {
    prepare();
    if (m_spare != nullptr)
        m_spare->listen({});
    return std::move(m_spare);
}

void MediaChildren::giveBack(std::unique_ptr<MediaChild> child) {
    child->listen({});
    if (m_spare == nullptr)
        m_spare = std::move(child);
    prepare();
}

}  // namespace Receiver
