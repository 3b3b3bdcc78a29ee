#include "Host/Control/RunningShells.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <system_error>

#include "Host/Inc/ShellAddress.h"

namespace Control {

namespace {

// A shell holds the lock of its file.
bool isAlive(const std::filesystem::path& path) {
    const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool alive = file >= 0 && flock(file, LOCK_SH | LOCK_NB) != 0;
    if (file >= 0)
        close(file);
    return alive;
}

}  // namespace

std::map<std::string, std::vector<std::string>> runningShells() {
    std::map<std::string, std::vector<std::string>> shells;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(Host::shellAddressFolder(), error)) {
        const auto& path = entry.path();
        const std::string name = path.filename().string();
        if (name.starts_with('.'))
            continue;
        if (!isAlive(path)) {
            std::filesystem::remove(path, error);
            continue;
        }
        std::ifstream file(path);
        const std::string address((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        shells[address].push_back(name);
    }
    return shells;
}

}  // namespace Control
