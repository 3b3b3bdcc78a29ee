// The command line of the shell.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include <glib.h>

namespace Shell {

struct Options {
    std::string url;                    // In the folder that is served, if there is one.
    std::optional<std::string> folder;  // To serve.
    std::optional<std::string> example;
    std::string profile =
        "1.2.1";  // With options, such as +PVR. Empty for a user agent without the HbbTV token.
    std::optional<std::string> userAgent;  // Instead of WebKit's own with the profile.
    std::optional<std::string> profileFolder;
    std::optional<std::string> reloadFolder;
    std::optional<std::string> ait;  // Of the broadcast; there is no URL then.
    std::optional<std::string> scenario;
    std::optional<std::string> screenshot;
    std::optional<std::string> recording;
    double zoom = 1.0;
    int carouselLimitSeconds = 30;
    int checkLimitSeconds = 20;
    gboolean exitAfterLoad = FALSE;
    gboolean requireVerdict = FALSE;
    gboolean automation = FALSE;
    gboolean receiver = TRUE;
    gboolean sessionBus = FALSE;
    gboolean ignoreTlsErrors = FALSE;
    gboolean quiet = FALSE;
};

// The arguments without the program's name; nothing, with the reason, when they are no good. Automation needs
// no URL, because the driver navigates. A call for help ends the program.
[[nodiscard]] std::optional<Options> parseOptions(const std::vector<std::string>& arguments,
                                                  std::string& problem);

// What people type for a page as a URL: a file's path and an address without its scheme serve as well. What
// is none of them is told of as a missing file.
[[nodiscard]] std::string urlOf(const std::string& argument);

// Tells the reason; the exit code.
[[nodiscard]] int refuseOptions(const std::string& problem);

}  // namespace Shell
