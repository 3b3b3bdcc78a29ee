// The command line of the shell.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace Shell {

struct Options {
    std::string url;
    std::string profile = "1.2.1";         // Empty for a user agent without the HbbTV token.
    std::optional<std::string> userAgent;  // Instead of WebKit's own with the profile.
    std::optional<std::string> profileFolder;
    std::optional<std::string> reloadFolder;
    std::optional<std::string> ait;  // Of the broadcast; there is no URL then.
    std::optional<std::string> scenario;
    std::optional<std::string> screenshot;
    double zoom = 1.0;
    unsigned carouselLimitSeconds = 30;
    unsigned checkLimitSeconds = 20;
    bool exitAfterLoad = false;
    bool requireVerdict = false;
    bool automation = false;
    bool receiver = true;
    bool sessionBus = false;
    bool ignoreTlsErrors = false;
    bool quiet = false;
};

// The arguments without the program's name; nothing, with the reason, when they are no good. Automation needs
// no URL, because the driver navigates. A call for help ends the program.
[[nodiscard]] std::optional<Options> parseOptions(const std::vector<std::string>& arguments,
                                                  std::string& problem);

// Tells the reason; the exit code.
[[nodiscard]] int refuseOptions(const std::string& problem);

}  // namespace Shell
