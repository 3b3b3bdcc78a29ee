// Measurements that must not profit from what an earlier one has left behind.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

namespace Benchmarks {

// What `measure` returns, a number, in a process of its own; negative when the process failed.
template <typename Function>
[[nodiscard]] double InOwnProcess(const Function& measure) {
    int line[2];
    if (pipe(line) != 0)
        return -1;
    const pid_t child = fork();
    if (child == 0) {
        const double value = measure();
        _exit(write(line[1], &value, sizeof value) == sizeof value ? 0 : 1);
    }
    close(line[1]);
    double value = -1;
    if (child < 0 || read(line[0], &value, sizeof value) != sizeof value)
        value = -1;
    close(line[0]);
    waitpid(child, nullptr, 0);
    return value;
}

}  // namespace Benchmarks
