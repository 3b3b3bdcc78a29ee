// The command line of the shell.
#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace Shell {

struct Options {
    std::string url;
    std::string profile = "1.2.1";  // Empty for a user agent without the HbbTV token.
    std::optional<std::string> scenario;
    std::optional<std::string> screenshot;
    unsigned carouselLimitSeconds = 30;
    bool exitAfterLoad = false;
    bool automation = false;
    bool receiver = true;
};

struct HelpWanted {};

struct BadUsage {
    std::string reason;
};

using ParsedOptions = std::variant<Options, HelpWanted, BadUsage>;

// The arguments without the program's name. Automation needs no URL, because the driver navigates.
[[nodiscard]] ParsedOptions parseOptions(const std::vector<std::string>& arguments);

[[nodiscard]] std::string usageText();
[[nodiscard]] std::string helpText();

}  // namespace Shell
