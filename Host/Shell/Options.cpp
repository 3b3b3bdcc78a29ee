#include "Host/Shell/Options.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>

#include <gio/gio.h>

#include "Host/Inc/CommandLine.h"
#include "Host/Shell/Keys/KeyMap.h"

namespace Shell {

using namespace Host;

namespace {

constexpr char kDescription[] =
    "Exit code: 0; 1 for no display, and with --exit-after-load for a page or an application that cannot be\n"
    "shown, a failed verdict or one that does not come; 2 for a bad command line or a scenario that the\n"
    "receiver refuses.\n"
    "\n"
    "Environment: HBBTV_BUNDLE (the bundle's path; empty: none), HBBTV_RECEIVER (the receiver's path),\n"
    "HBBTV_MEDIA (the path of the program that plays films for the receiver), HBBTV_LOG_LEVEL (the bundle's\n"
    "own lines: debug, info, warning, error or none), WEBKIT_INSPECTOR_SERVER and "
    "WEBKIT_INSPECTOR_HTTP_SERVER\n"
    "(ADDRESS:PORT for a remote Web Inspector).\n"
    "\n"
    "Remote control on the keyboard:\n";

CommandLine commandLine() {
    return {"hbbtv-shell", HBBTV_VERSION, "URL",
            "Shows an HbbTV application in a television browser of 1280x720 pixels.",
            kDescription + keyTableText()};
}

bool matches(const char* pattern, const std::string& text) {
    return g_regex_match_simple(pattern, text.c_str(), G_REGEX_DOLLAR_ENDONLY, G_REGEX_MATCH_DEFAULT) !=
           FALSE;
}

bool isFolder(const std::string& path) {
    return g_file_test(path.c_str(), G_FILE_TEST_IS_DIR) != FALSE;
}

// Of --reload and --profile-dir; the second one is made when it is missing.
std::string problemOfFolders(const Options& options) {
    if (options.reloadFolder && !isFolder(*options.reloadFolder))
        return "--reload: there is no folder " + *options.reloadFolder;
    if (!options.profileFolder)
        return {};
    const char* path = options.profileFolder->c_str();
    constexpr int kOwnersOnly = 0700;
    if (g_mkdir_with_parents(path, kOwnersOnly) == 0 && access(path, R_OK | W_OK | X_OK) == 0)
        return {};
    const std::string reason = std::strerror(errno);
    return "--profile-dir: cannot use " + *options.profileFolder + ": " + reason;
}

// What is wrong with the values, empty for nothing.
std::string problemOf(const Options& options, size_t urls) {
    constexpr int kLongestLimit = 600;
    constexpr double kSmallestZoom = 0.25;
    constexpr double kLargestZoom = 4;
    if (!options.profile.empty() && !matches(R"(^\d\.\d\.\d(\+[A-Z]+)*$)", options.profile))
        return "not a profile: " + options.profile;
    for (const int seconds : {options.carouselLimitSeconds, options.checkLimitSeconds}) {
        if (seconds < 1 || seconds > kLongestLimit)
            return "not a number of seconds from 1 to 600: " + std::to_string(seconds);
    }
    if (!(options.zoom >= kSmallestZoom && options.zoom <= kLargestZoom))
        return "not a factor from 0.25 to 4";
    if (options.requireVerdict && !options.exitAfterLoad)
        return "--require-verdict goes with --exit-after-load";
    if (urls + (options.ait ? 1 : 0) + (options.example ? 1 : 0) > 1)
        return "more than one URL, AIT or example";
    if (options.folder && (options.ait || options.example))
        return "--serve goes with a URL";
    if (options.url.empty() && options.ait.value_or("").empty() && !options.folder && !options.example &&
        !options.automation)
        return "no URL; --example zapper shows a demo application";
    return problemOfFolders(options);
}

}  // namespace

std::optional<Options> parseOptions(const std::vector<std::string>& arguments, std::string& problem) {
    Options options;
    OptionTexts texts;
    char** urls = nullptr;
    const GOptionEntry entries[] = {
        {"scenario", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(options.scenario),
         "The receiver's world (a JSON file), given to hbbtv-receiver", "FILE"},
        {"ait", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(options.ait),
         "Instead of a URL: the broadcast's applications, an AIT in XML. The one that is AUTOSTART begins, "
         "else the red "
         "key starts one",
         "FILE|URL"},
        {"example", 0, 0, G_OPTION_ARG_STRING, texts.placeFor(options.example),
         "Instead of a URL: a demo application (zapper, epg, player, carousel, information or demo)", "NAME"},
        {"serve", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(options.folder),
         "Serve a folder to this machine, with HbbTV's content types; the URL is a path in it, and may be "
         "missing",
         "FOLDER"},
        {"profile", 0, 0, G_OPTION_ARG_STRING, texts.placeFor(options.profile),
         "The HbbTV profile in the user agent, three digits and options (1.2.1, 1.2.1+DL+PVR); none: no "
         "HbbTV token",
         "VERSION"},
        {"user-agent", 0, 0, G_OPTION_ARG_STRING, texts.placeFor(options.userAgent),
         "The whole user agent; it needs an HbbTV token of its own for the page to find objects", "TEXT"},
        {"zoom", 0, 0, G_OPTION_ARG_DOUBLE, &options.zoom,
         "The size of the screen on the desktop (0.25 to 4); to the page it stays 1280x720", "FACTOR"},
        {"ignore-tls-errors", 0, 0, G_OPTION_ARG_NONE, &options.ignoreTlsErrors,
         "Load from servers whose certificate is no good", nullptr},
        {"profile-dir", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(options.profileFolder),
         "Keep cookies and what pages store in this folder, for the next shell", "FOLDER"},
        {"reload", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(options.reloadFolder),
         "Load the page anew when something in this folder changes", "FOLDER"},
        {"screenshot", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(options.screenshot),
         "Write what is on the screen to a PNG file when the page has loaded", "FILE"},
        {"record", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(options.recording),
         "When the shell ends, write a page that draws what happened: calls of the page and to the receiver, "
         "signals, handlers, keys and the console",
         "FILE.html"},
        {"exit-after-load", 0, 0, G_OPTION_ARG_NONE, &options.exitAfterLoad,
         "Leave when the page has loaded; if it has an element with the id \"verdict\", when that element's "
         "data-verdict is \"pass\" or \"fail\"; prints \"verdict: pass|fail|none\"",
         nullptr},
        {"require-verdict", 0, 0, G_OPTION_ARG_NONE, &options.requireVerdict,
         "With --exit-after-load: a page that gives no verdict has failed", nullptr},
        {"check-limit", 0, 0, G_OPTION_ARG_INT, &options.checkLimitSeconds,
         "With --exit-after-load: how long a page may take to load, and then to give its verdict (1 to 600; "
         "20)",
         "SECONDS"},
        {"quiet", 'q', 0, G_OPTION_ARG_NONE, &options.quiet,
         "Neither the page's console nor what it could not load on the terminal", nullptr},
        {"automation", 0, 0, G_OPTION_ARG_NONE, &options.automation,
         "Let a WebDriver control the views; no URL is needed", nullptr},
        {"no-receiver", 0, G_OPTION_FLAG_REVERSE, G_OPTION_ARG_NONE, &options.receiver,
         "Do not start hbbtv-receiver when there is none on the bus", nullptr},
        {"session-bus", 0, 0, G_OPTION_ARG_NONE, &options.sessionBus,
         "Use the session's bus, and a receiver that is there, instead of a bus of the shell's own", nullptr},
        {"carousel-limit", 0, 0, G_OPTION_ARG_INT, &options.carouselLimitSeconds,
         "How long a file of the object carousel may take (1 to 600; 30)", "SECONDS"},
        {G_OPTION_REMAINING, 0, 0, G_OPTION_ARG_FILENAME_ARRAY, &urls, nullptr, nullptr},
        {}};
    problem = parseCommandLine(commandLine(), entries, arguments);
    const GStrings ownedUrls(urls);
    texts.take();
    if (options.profile == "none")
        options.profile.clear();
    if (urls)
        options.url = urls[0];
    if (problem.empty())
        problem = problemOf(options, urls ? g_strv_length(urls) : 0);
    return problem.empty() ? std::optional<Options>(options) : std::nullopt;
}

std::string urlOf(const std::string& argument) {
    // A host that has a port, an address or the name of this machine, or a dot and a path.
    constexpr char kHost[] =
        R"((?i)^([a-z\d.-]+:\d+|(localhost|\d+(\.\d+){3}|\[[\da-f:.]+\])(:\d+)?|[a-z\d-]+(\.[a-z\d-]+)+(?=/))([/?#].*)?$)";
    const bool isFile = g_file_test(argument.c_str(), G_FILE_TEST_EXISTS) != FALSE;
    if (!isFile && matches(kHost, argument) && !isFolder(argument.substr(0, argument.find('/'))))
        return "http://" + argument;
    if (!isFile && g_uri_peek_scheme(argument.c_str()))
        return argument;
    const GObjectHandle<GFile> file(g_file_new_for_commandline_arg(argument.c_str()));
    return GChars(g_file_get_uri(file.get())).get();
}

int refuseOptions(const std::string& problem) {
    return refuseCommandLine(commandLine(), problem);
}

}  // namespace Shell
