// A program that the shell runs and that never outlives it, whatever ends the shell.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Host/Inc/GCallbacks.h"

namespace Shell {

class ChildProcess : Host::Pinned {
 public:
    enum class Errors { Shown, Hidden };

    // Its standard output comes to us, its standard error is ours unless it is hidden. Null (the reason is
    // logged) if it cannot be run.
    [[nodiscard]] static std::unique_ptr<ChildProcess> start(const std::vector<std::string>& command,
                                                             Errors errors = Errors::Shown);

    // Asks it to end, and makes it end if it does not.
    ~ChildProcess();

    // Blocks for the next line of its output; false at the end of the output or after the time limit.
    [[nodiscard]] bool readLine(std::string& line, int timeoutMs);

    // It has closed its output, as it does when it ends.
    [[nodiscard]] bool outputEnded() const { return m_outputEnded; }

    // From now on lines of its output, and at last its end, are told through the main loop.
    void watch(std::function<void(const std::string&)> line, std::function<void()> ended);

 private:
    ChildProcess(GPid pid, int output) : m_pid(pid), m_output(output) {}

    gboolean onOutput(int, GIOCondition);
    void onExit(GPid, int);

    // Reads what is there; false at the end.
    [[nodiscard]] bool readSome();
    [[nodiscard]] bool takeLine(std::string& line);
    [[nodiscard]] bool reaped() const;

    GPid m_pid;  // 0 once it has ended.
    int m_output;
    std::string m_buffer;
    bool m_outputEnded = false;
    std::function<void(const std::string&)> m_lineCallback;
    std::function<void()> m_endCallback;
    Host::GSourceHandle m_outputSource;
    Host::GSourceHandle m_exitSource;
};

}  // namespace Shell
