#include "Host/Shell/Processes/ChildProcess.h"

#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>

#include <glib-unix.h>

namespace Shell {

using namespace Host;

namespace {

constexpr gint64 kEndLimitUs = 2 * G_USEC_PER_SEC;
constexpr gulong kEndPollUs = 5000;

// Runs in the child: the kernel ends it with us, even when we are killed.
void endWithParent(gpointer) {
    prctl(PR_SET_PDEATHSIG, SIGTERM);
}

}  // namespace

std::unique_ptr<ChildProcess> ChildProcess::start(const std::vector<std::string>& command, Errors errors) {
    std::vector<char*> arguments;
    for (const std::string& argument : command)
        arguments.push_back(const_cast<char*>(argument.c_str()));
    arguments.push_back(nullptr);
    const auto flags =
        static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD | G_SPAWN_CLOEXEC_PIPES |
                                 (errors == Errors::Hidden ? G_SPAWN_STDERR_TO_DEV_NULL : G_SPAWN_DEFAULT));
    GErrorSlot error;
    GPid pid = 0;
    int output = -1;
    if (!g_spawn_async_with_pipes(nullptr, arguments.data(), nullptr, flags, endWithParent, nullptr, &pid,
                                  nullptr, &output, nullptr, error.out())) {
        g_warning("%s", error.message());
        return nullptr;
    }
    return std::unique_ptr<ChildProcess>(new ChildProcess(pid, output));
}

ChildProcess::~ChildProcess() {
    m_outputSource.reset();
    m_exitSource.reset();
    close(m_output);
    if (m_pid == 0)
        return;
    kill(m_pid, SIGTERM);
    for (const gint64 limit = g_get_monotonic_time() + kEndLimitUs; g_get_monotonic_time() < limit;) {
        if (reaped())
            return;
        g_usleep(kEndPollUs);
    }
    kill(m_pid, SIGKILL);
    waitpid(m_pid, nullptr, 0);
}

bool ChildProcess::reaped() const {
    return waitpid(m_pid, nullptr, WNOHANG) != 0;
}

bool ChildProcess::takeLine(std::string& line) {
    const size_t end = m_buffer.find('\n');
    if (end == std::string::npos)
        return false;
    line = m_buffer.substr(0, end);
    m_buffer.erase(0, end + 1);
    return true;
}

bool ChildProcess::readSome() {
    char bytes[4096];
    const ssize_t count = read(m_output, bytes, sizeof bytes);
    if (count > 0)
        m_buffer.append(bytes, static_cast<size_t>(count));
    m_outputEnded = count == 0;
    return count > 0 || (count < 0 && errno == EINTR);
}

bool ChildProcess::readLine(std::string& line, int timeoutMs) {
    while (!takeLine(line)) {
        pollfd waiting = {m_output, POLLIN, 0};
        if (poll(&waiting, 1, timeoutMs) <= 0 || !readSome())
            return false;
    }
    return true;
}

void ChildProcess::watch(std::function<void(const std::string&)> line, std::function<void()> ended) {
    m_lineCallback = std::move(line);
    m_endCallback = std::move(ended);
    m_outputSource.reset(g_unix_fd_add(m_output, static_cast<GIOCondition>(G_IO_IN | G_IO_HUP),
                                       callback<&ChildProcess::onOutput>, this));
    m_exitSource.reset(g_child_watch_add(m_pid, callback<&ChildProcess::onExit>, this));
}

gboolean ChildProcess::onOutput(int, GIOCondition) {
    if (!readSome()) {
        m_outputSource.forget();
        return G_SOURCE_REMOVE;
    }
    std::string line;
    while (takeLine(line))
        m_lineCallback(line);
    return G_SOURCE_CONTINUE;
}

void ChildProcess::onExit(GPid, int) {
    m_exitSource.forget();
    m_pid = 0;
    // May destroy this object.
    const auto ended = std::move(m_endCallback);
    ended();
}

}  // namespace Shell
