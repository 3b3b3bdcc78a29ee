#include "Host/Media/SoundDevice.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <system_error>

namespace Media {

namespace {

namespace fs = std::filesystem;

bool hasSoundServer() {
    if (std::getenv("PULSE_SERVER") != nullptr)
        return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    return runtime != nullptr && fs::exists(fs::path(runtime) / "pulse/native", error);
}

// Devices that play end in "p": pcmC0D0p.
bool hasSoundCard() {
    std::error_code error;
    const fs::directory_iterator devices("/dev/snd", error);
    return !error && std::any_of(begin(devices), end(devices), [](const fs::directory_entry& device) {
        const auto name = device.path().filename().string();
        return name.starts_with("pcm") && name.ends_with("p");
    });
}

}  // namespace

bool hasSoundDevice() {
    return hasSoundServer() || hasSoundCard();
}

}  // namespace Media
