#include "Host/Shell/Processes/TemporaryFolder.h"

#include <sys/wait.h>
#include <unistd.h>

namespace Shell {

using namespace Host;

namespace {

// Lives until its input ends. WebKit's processes end at the same time and may still write.
constexpr char kRemoverScript[] = R"(
    trap '' HUP INT TERM
    read -r _
    until rm -rf -- "$1"; do sleep 0.1; done
)";

}  // namespace

TemporaryFolder::TemporaryFolder() {
    GErrorSlot error;
    const GChars path(g_dir_make_tmp("hbbtv-shell-XXXXXX", error.out()));
    if (!path) {
        g_warning("no temporary folder: %s", error.message());
        return;
    }
    m_path = path.get();
    const char* command[] = {"/bin/sh", "-c", kRemoverScript, "hbbtv-shell-remover", path.get(), nullptr};
    constexpr auto kFlags = static_cast<GSpawnFlags>(G_SPAWN_DO_NOT_REAP_CHILD | G_SPAWN_CLOEXEC_PIPES |
                                                     G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
    if (!g_spawn_async_with_pipes(nullptr, const_cast<char**>(command), nullptr, kFlags, nullptr, nullptr,
                                  &m_remover, &m_lifeline, nullptr, nullptr, error.out()))
        g_warning("%s will be left behind: %s", m_path.c_str(), error.message());
}

TemporaryFolder::~TemporaryFolder() {
    if (m_lifeline < 0)
        return;
    close(m_lifeline);
    waitpid(m_remover, nullptr, 0);
}

}  // namespace Shell
