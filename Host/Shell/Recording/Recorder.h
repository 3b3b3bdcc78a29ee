// --record: a process of its own that hears everything and, however the shell ends, writes the page. It hears
// the web processes through a pipe, the shell's information lines, and what all processes write to the
// terminal, which it passes on.
#pragma once

#include <memory>
#include <string>

#include <sys/types.h>

namespace Shell {

class Recorder {
 public:
    struct What {
        std::string file;
        std::string title;
        bool hidesConsole;  // From the terminal.
    };

    // To be called before there are threads. Null, with the reason, when it cannot be.
    [[nodiscard]] static std::unique_ptr<Recorder> start(const What& what, std::string& problem);
    // When the page is written.
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

 private:
    Recorder(pid_t pid, int entries, int output, int errors);

    pid_t m_pid;
    int m_entries;
    int m_output;  // The terminal's.
    int m_errors;
    unsigned m_logHandler;
};

}  // namespace Shell
