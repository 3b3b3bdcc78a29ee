#include "Host/Shell/Processes/InstalledFiles.h"

#include <cstdlib>
#include <filesystem>
#include <initializer_list>
#include <system_error>

namespace Shell {

namespace {

namespace fs = std::filesystem;

// What the environment names, if it may, else the first candidate that exists; they are relative to the
// folder of this program.
std::optional<std::string> findBeside(std::initializer_list<const char*> candidates,
                                      const char* variable = nullptr) {
    if (const char* value = variable ? std::getenv(variable) : nullptr)
        return value;
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    if (error)
        return std::nullopt;
    for (const char* candidate : candidates) {
        const fs::path path = (program.parent_path() / candidate).lexically_normal();
        if (fs::exists(path, error))
            return path.string();
    }
    return std::nullopt;
}

}  // namespace

// HBBTV_LIBDIR, HBBTV_LIBEXECDIR and HBBTV_DATADIR are the install folders as seen from the folder of this
// program, HBBTV_SCENARIOS is the folder in the source tree.
std::optional<std::string> findAdapterFolder() {
    return findBeside({"../WebProcess/Extension", HBBTV_LIBDIR "/hbbtv/web-process"});
}

std::optional<std::string> findBundle() {
    return findBeside(
        {"../../InjectedBundle/hbbtv-injected-bundle.so", HBBTV_LIBDIR "/hbbtv/hbbtv-injected-bundle.so"},
        "HBBTV_BUNDLE");
}

std::optional<std::string> findReceiver() {
    return findBeside({"hbbtv-receiver", "../Receiver/hbbtv-receiver", HBBTV_LIBEXECDIR "/hbbtv-receiver"},
                      "HBBTV_RECEIVER");
}

std::optional<std::string> findDefaultScenario() {
    return findBeside({HBBTV_DATADIR "/hbbtv/scenarios/default.json", HBBTV_SCENARIOS "/default.json"});
}

std::optional<std::string> findExamples() {
    const auto scenario = findDefaultScenario();
    return scenario ? std::optional<std::string>(fs::path(*scenario).parent_path().parent_path())
                    : std::nullopt;
}

std::optional<std::string> findPictures() {
    return findBeside({"../../pictures", HBBTV_DATADIR "/hbbtv/pictures"});
}

}  // namespace Shell
