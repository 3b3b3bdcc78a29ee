#include "Host/Shell/Options.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <functional>
#include <map>

#include "Host/Shell/KeyMap.h"

namespace Shell {

namespace {

constexpr char kUsage[] =
    "usage: hbbtv-shell [--scenario FILE] [--profile 1.2.1|none] [--screenshot FILE] [--exit-after-load]\n"
    "                   [--automation] [--no-receiver] [--carousel-limit SECONDS] URL\n";

constexpr char kHelp[] =
    "\n"
    "Shows an HbbTV application in a television browser of 1280x720 pixels.\n"
    "\n"
    "  --scenario FILE     the receiver's world (a JSON file), given to hbbtv-receiver\n"
    "  --profile VERSION   the HbbTV profile in the user agent, three digits (1.2.1); none: no HbbTV token\n"
    "  --screenshot FILE   write what is on the screen to a PNG file when the page has loaded\n"
    "  --exit-after-load   leave when the page has loaded; if it has an element with the id \"verdict\", "
    "when that\n"
    "                      element's data-verdict is \"pass\" or \"fail\"; prints \"verdict: "
    "pass|fail|none\"\n"
    "  --automation        let a WebDriver control the views; no URL is needed\n"
    "  --no-receiver       do not start hbbtv-receiver when there is none on the session bus\n"
    "  --carousel-limit SECONDS\n"
    "                      how long a file of the object carousel may take (1 to 600; 30)\n"
    "  --help              this text\n"
    "\n"
    "Exit code: 0, or with --exit-after-load 1 for a failed load, a failed or a missing verdict; 2 for a "
    "bad\n"
    "command line or a scenario that the receiver refuses.\n"
    "\n"
    "Environment: HBBTV_BUNDLE (the bundle's path; empty: none), HBBTV_RECEIVER (the receiver's path),\n"
    "HBBTV_MEDIA (the path of the program that plays films for the receiver).\n"
    "\n"
    "Remote control on the keyboard:\n";

bool isProfile(const std::string& text) {
    return text.size() == 5 && text[1] == '.' && text[3] == '.' &&
           std::all_of(text.begin(), text.end(),
                       [](unsigned char c) { return c == '.' || std::isdigit(c) != 0; });
}

bool readNumber(const std::string& text, unsigned smallest, unsigned largest, unsigned& number) {
    const char* end = text.data() + text.size();
    const auto [stopped, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stopped == end && number >= smallest && number <= largest;
}

// Takes the value of an option; the reason when it is no good.
using TakeValue = std::function<std::string(Options&, const std::string&)>;

const std::map<std::string, TakeValue>& valueOptions() {
    static const std::map<std::string, TakeValue> s_options = {
        {"--scenario",
         [](Options& options, const std::string& value) {
             options.scenario = value;
             return std::string();
         }},
        {"--screenshot",
         [](Options& options, const std::string& value) {
             options.screenshot = value;
             return std::string();
         }},
        {"--profile",
         [](Options& options, const std::string& value) -> std::string {
             if (value != "none" && !isProfile(value))
                 return "not a profile: " + value;
             options.profile = value == "none" ? "" : value;
             return {};
         }},
        {"--carousel-limit",
         [](Options& options, const std::string& value) -> std::string {
             if (!readNumber(value, 1, 600, options.carouselLimitSeconds))
                 return "not a number of seconds: " + value;
             return {};
         }},
    };
    return s_options;
}

const std::map<std::string, void (*)(Options&)>& switches() {
    static const std::map<std::string, void (*)(Options&)> s_switches = {
        {"--exit-after-load", [](Options& options) { options.exitAfterLoad = true; }},
        {"--automation", [](Options& options) { options.automation = true; }},
        {"--no-receiver", [](Options& options) { options.receiver = false; }},
    };
    return s_switches;
}

}  // namespace

ParsedOptions parseOptions(const std::vector<std::string>& arguments) {
    Options options;
    for (size_t at = 0; at < arguments.size(); ++at) {
        const std::string& argument = arguments[at];
        if (argument == "--help")
            return HelpWanted{};
        if (const auto found = switches().find(argument); found != switches().end()) {
            found->second(options);
            continue;
        }
        const size_t equals = argument.find('=');
        if (const auto found = valueOptions().find(argument.substr(0, equals));
            found != valueOptions().end()) {
            if (equals == std::string::npos && ++at == arguments.size())
                return BadUsage{argument + " needs a value"};
            const std::string value =
                equals == std::string::npos ? arguments[at] : argument.substr(equals + 1);
            if (value.empty())
                return BadUsage{found->first + " needs a value"};
            if (const std::string reason = found->second(options, value); !reason.empty())
                return BadUsage{reason};
            continue;
        }
        if (argument.empty() || argument[0] == '-')
            return BadUsage{"unknown option: " + argument};
        if (!options.url.empty())
            return BadUsage{"more than one URL"};
        options.url = argument;
    }
    if (options.url.empty() && !options.automation)
        return BadUsage{"no URL"};
    return options;
}

std::string usageText() {
    return kUsage;
}

std::string helpText() {
    return std::string(kUsage) + kHelp + keyTableText();
}

}  // namespace Shell
