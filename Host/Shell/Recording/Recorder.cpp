#include "Host/Shell/Recording/Recorder.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <functional>
#include <iostream>
#include <string_view>
#include <utility>

#include <glib.h>

#include "Host/Shell/Recording/Recording.h"

namespace Shell {

namespace {

// What the bundle looks for, see CSP/Inc/PCRecord.h.
constexpr char kVariable[] = "HBBTV_RECORD";
constexpr std::string_view kEnd = "end\n";
constexpr int kPipeBytes = 1024 * 1024;
// Who writes more without a line's end has it cut there.
constexpr std::size_t kLongestLine = 64 * 1024;

struct Pipe {
    int read = -1;
    int write = -1;
};

bool open(Pipe& ends) {
    int both[2];
    if (pipe2(both, O_CLOEXEC) != 0)
        return false;
    ends = {both[0], both[1]};
    return true;
}

bool writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(file, text.data(), text.size());
        if (count < 0 && errno != EINTR)
            return false;
        text.remove_prefix(count > 0 ? static_cast<std::size_t>(count) : 0);
    }
    return true;
}

// Lines of a file, as they come.
class Lines {
 public:
    Lines(int file, std::function<void(std::string)> take) : m_file(file), m_take(std::move(take)) {}

    [[nodiscard]] int file() const { return m_file; }

    // False at the end.
    bool readSome() {
        std::array<char, 64 * 1024> bytes;
        const ssize_t count = read(m_file, bytes.data(), bytes.size());
        if (count <= 0)
            return count < 0 && errno == EINTR;
        m_rest.append(bytes.data(), static_cast<std::size_t>(count));
        std::size_t start = 0;
        for (std::size_t end; (end = m_rest.find('\n', start)) != std::string::npos; start = end + 1)
            m_take(m_rest.substr(start, end - start));
        m_rest.erase(0, start);
        if (m_rest.size() > kLongestLine)
            flush();
        return true;
    }

    void flush() {
        if (!m_rest.empty())
            m_take(std::exchange(m_rest, {}));
    }

 private:
    int m_file;
    std::function<void(std::string)> m_take;
    std::string m_rest;
};

// The recorder's process.
void record(const Recorder::What& what, int page, int entries, int output, int errors) {
    Recording recording;
    bool isOver = false;
    const auto passOn = [&](const char* name, int terminal) {
        return [&recording, &what, name, terminal](const std::string& line) {
            recording.add(entryOf("text", g_get_monotonic_time(), name, line));
            if (!what.hidesConsole || line.find(": CONSOLE ") == std::string::npos)
                writeAll(terminal, line + '\n');
        };
    };
    std::array<Lines, 3> all = {Lines(entries,
                                      [&](std::string line) {
                                          if (line + '\n' == kEnd)
                                              isOver = true;
                                          else
                                              recording.add(std::move(line));
                                      }),
                                Lines(output, passOn("stdout", STDOUT_FILENO)),
                                Lines(errors, passOn("stderr", STDERR_FILENO))};
    std::array<pollfd, 3> waiting;
    for (std::size_t i = 0; i < all.size(); ++i)
        waiting[i] = {all[i].file(), POLLIN, 0};
    // The entries end with the last process that may write some.
    while (!isOver && waiting[0].fd >= 0) {
        if (poll(waiting.data(), waiting.size(), -1) < 0 && errno != EINTR)
            break;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (waiting[i].revents != 0 && !all[i].readSome())
                waiting[i].fd = -1;
        }
    }
    for (std::size_t i = 1; i < all.size(); ++i) {
        while (waiting[i].fd >= 0 && poll(&waiting[i], 1, 0) > 0 && all[i].readSome()) {
        }
        all[i].flush();
    }
    if (ftruncate(page, 0) != 0 || !writeAll(page, recording.page(what.title)))
        std::cerr << "hbbtv-shell: cannot write " << what.file << ": " << std::strerror(errno) << std::endl;
}

void sendInformation(const char*, GLogLevelFlags, const char* text, gpointer entries) {
    writeAll(GPOINTER_TO_INT(entries), entryOf("shell", g_get_monotonic_time(), text) + '\n');
}

}  // namespace

std::unique_ptr<Recorder> Recorder::start(const What& what, std::string& problem) {
    const int page = ::open(what.file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0666);
    Pipe entries;
    Pipe output;
    Pipe errors;
    if (page < 0 || !open(entries) || !open(output) || !open(errors)) {
        problem = "cannot write " + what.file + ": " + std::strerror(errno);
        return nullptr;
    }
    // Who writes more than is read waits.
    fcntl(entries.write, F_SETPIPE_SZ, kPipeBytes);
    std::cout.flush();
    const pid_t pid = fork();
    if (pid < 0) {
        problem = std::string("cannot record: ") + std::strerror(errno);
        return nullptr;
    }
    if (pid == 0) {
        prctl(PR_SET_NAME, "hbbtv-recorder");
        for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGPIPE})
            std::signal(signal, SIG_IGN);
        for (const int end : {entries.write, output.write, errors.write})
            close(end);
        record(what, page, entries.read, output.read, errors.read);
        _exit(0);
    }
    for (const int end : {page, entries.read, output.read, errors.read})
        close(end);
    const int terminal[] = {fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0),
                            fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0)};
    dup2(output.write, STDOUT_FILENO);
    dup2(errors.write, STDERR_FILENO);
    close(output.write);
    close(errors.write);
    return std::unique_ptr<Recorder>(new Recorder(pid, entries.write, terminal[0], terminal[1]));
}

Recorder::Recorder(pid_t pid, int entries, int output, int errors)
    : m_pid(pid),
      m_entries(entries),
      m_output(output),
      m_errors(errors),
      m_logHandler(
          g_log_set_handler(G_LOG_DOMAIN, G_LOG_LEVEL_INFO, sendInformation, GINT_TO_POINTER(entries))) {
    // Other processes open our end of the pipe.
    const std::string path = "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(entries);
    g_setenv(kVariable, path.c_str(), TRUE);
}

Recorder::~Recorder() {
    g_log_remove_handler(G_LOG_DOMAIN, m_logHandler);
    std::cout.flush();
    dup2(m_output, STDOUT_FILENO);
    dup2(m_errors, STDERR_FILENO);
    writeAll(m_entries, kEnd);
    waitpid(m_pid, nullptr, 0);
    close(m_entries);
    close(m_output);
    close(m_errors);
}

}  // namespace Shell
