// hbbtv-check-middleware: is a middleware what the bundle needs it to be?
#include <unistd.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <optional>
#include <sstream>

#include "Host/Check/Session.h"
#include "Host/Inc/CommandLine.h"

namespace {

using namespace Check;
using namespace Host;

constexpr int kLongestLimit = 600;

struct Request {
    Options options;
    std::optional<std::string> junit;
    std::optional<std::string> html;
};

CommandLine commandLine() {
    return {"hbbtv-check-middleware", HBBTV_VERSION, nullptr,
            "Checks the middleware on the session bus: does it do what the HbbTV bundle needs, and how fast?",
            "Each check is a line, PASS, FAIL or SKIP, and its reason. SKIP is what pages do not need, or\n"
            "what was not to be seen here. An INTERFACE is written like IBroadcastPlayer; several are\n"
            "separated by commas.\n"
            "Run it where nobody watches: channels change, and odd values are set.\n"
            "\n"
            "Exit codes: 0 nothing has failed, 1 something has, 2 wrong arguments or no bus."};
}

Request parse(const std::vector<std::string>& arguments, const std::vector<Interface>& contract,
              std::string& problem) {
    Request request;
    Options& options = request.options;
    char** only = nullptr;
    OptionTexts texts;
    const GOptionEntry entries[] = {
        {"only", 0, 0, G_OPTION_ARG_STRING_ARRAY, &only, "Check these; what a part of a middleware claims",
         "INTERFACE"},
        {"limit", 0, 0, G_OPTION_ARG_INT, &options.limitSeconds,
         "How long an answer and a signal may take (1 to 600; 5)", "SECONDS"},
        {"media", 0, 0, G_OPTION_ARG_STRING, texts.placeFor(options.media),
         "A medium that plays, to be played to its end", "URL"},
        {"stream-event", 0, 0, G_OPTION_ARG_STRING, texts.placeFor(options.streamEvent),
         "A stream event that fires by itself", "NAME@URL"},
        {"file", 0, 0, G_OPTION_ARG_STRING, texts.placeFor(options.file),
         "A file that is in the object carousel", "URL"},
        {"shell", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(options.shell),
         "Also show a page that uses the middleware, in this hbbtv-shell; it needs a display", "PROGRAM"},
        {"junit", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(request.junit),
         "Write the results as JUnit's XML", "FILE"},
        {"html", 0, 0, G_OPTION_ARG_FILENAME, texts.placeFor(request.html),
         "Write a page with the results and the times", "FILE"},
        {}};
    problem = parseCommandLine(commandLine(), entries, arguments);
    const GStrings owned(only);
    texts.take();
    for (char** list = only; list && *list; ++list) {
        std::stringstream names(*list);
        for (std::string name; std::getline(names, name, ',');)
            options.only.insert(shortName(name));
    }
    for (const auto& name : options.only) {
        if (std::none_of(contract.begin(), contract.end(),
                         [&](const Interface& each) { return each.shortName() == name; }))
            problem = "no interface " + name;
    }
    if (options.limitSeconds < 1 || options.limitSeconds > kLongestLimit)
        problem = "not a number of seconds from 1 to 600: " + std::to_string(options.limitSeconds);
    if (!options.streamEvent.empty() && options.streamEvent.find('@') == std::string::npos)
        problem = "--stream-event is written NAME@URL";
    return request;
}

// The group stands above its first line.
std::function<void(const Finding&)> teller() {
    return [group = std::string()](const Finding& finding) mutable {
        if (finding.group != group)
            std::cout << (group.empty() ? "" : "\n") << finding.group << '\n';
        group = finding.group;
        std::cout << "  " << lineOf(finding, isatty(STDOUT_FILENO) != 0) << std::endl;
    };
}

}  // namespace

int main(int count, char** arguments) {
    std::string problem;
    const auto contract = readContract();
    const Request request = parse({arguments + 1, arguments + std::max(count, 1)}, contract, problem);
    std::ofstream junit;
    std::ofstream html;
    // Not after minutes.
    for (const auto& [name, file] : {std::pair{&request.junit, &junit}, {&request.html, &html}}) {
        if (problem.empty() && *name && (file->open(**name), !*file))
            problem = "cannot write " + **name;
    }
    if (!problem.empty())
        return refuseCommandLine(commandLine(), problem);
    GErrorSlot error;
    const GObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, error.out()));
    if (!bus) {
        std::cerr << "hbbtv-check-middleware: there is no session bus: " << error.message() << std::endl;
        return kBadUsage;
    }
    const Report report = Session(bus.get(), contract, request.options, teller()).run();
    std::cout << '\n' << report.summary() << std::endl;
    if (junit.is_open())
        junit << report.junit();
    if (html.is_open())
        html << report.html(request.options.limitSeconds);
    return report.count(Verdict::Fail) == 0 ? 0 : 1;
}
