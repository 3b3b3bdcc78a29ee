// hbbtv-control: steers the television of a running hbbtv-shell.
#include <algorithm>
#include <iostream>
#include <optional>
#include <string>

#include "Host/Control/Commands.h"
#include "Host/Control/Failure.h"
#include "Host/Inc/CommandLine.h"

namespace {

using namespace Control;
using namespace Host;

constexpr int kFailed = 1;

struct Request {
    std::optional<std::string> bus;
    int waitSeconds = 0;
    const Command* command = nullptr;
    Words words;
};

CommandLine commandLine() {
    return {"hbbtv-control",
            HBBTV_VERSION,
            "COMMAND [WORD...]",
            "Steers the television of a running hbbtv-shell, or the receiver on the session's bus.",
            "Commands:\n" + commandTable() +
                "\nA PLACE is written like locale.country, or as a JSON pointer (/locale/country).\n"
                "A METHOD is written like GetKeyMask or IDAEBrowserAPI.GetKeyMask.\n"
                "\nExit codes: 0 done, 1 the television did not do it or there is none, 2 wrong arguments.\n",
            true};
}

Request parse(const Words& arguments) {
    Request request;
    OptionTexts texts;
    char** rest = nullptr;
    const GOptionEntry entries[] = {
        {"bus", 0, 0, G_OPTION_ARG_STRING, texts.placeFor(request.bus),
         "The bus of the television, if several shells run", "ADDRESS"},
        {"wait", 0, 0, G_OPTION_ARG_INT, &request.waitSeconds, "Wait this long for a television that comes",
         "SECONDS"},
        {G_OPTION_REMAINING, 0, 0, G_OPTION_ARG_FILENAME_ARRAY, &rest, nullptr, nullptr},
        {}};
    std::string problem = parseCommandLine(commandLine(), entries, arguments);
    const GStrings owned(rest);
    texts.take();
    for (char** word = rest; word && *word; ++word) {
        request.words.emplace_back(*word);
        if (!g_utf8_validate(*word, -1, nullptr))
            problem = "not UTF-8: " + request.words.back();
    }
    if (!problem.empty())
        throw Misuse(problem);
    if (request.words.empty())
        throw Misuse("no command");
    request.command = findCommand(request.words[0]);
    if (!request.command)
        throw Misuse("unknown command " + request.words[0]);
    request.words.erase(request.words.begin());
    const auto count = request.words.size();
    if (count < request.command->fewest || count > request.command->most)
        throw Misuse(std::string("it is: ") + request.command->name + " " + request.command->parameters);
    return request;
}

Television findInTime(const Request& request) {
    constexpr gulong kPauseUs = 50000;
    const auto limit = g_get_monotonic_time() + request.waitSeconds * G_USEC_PER_SEC;
    for (;;) {
        try {
            return Television::find(request.bus);
        } catch (const Failure&) {
            if (g_get_monotonic_time() >= limit)
                throw;
        }
        g_usleep(kPauseUs);
    }
}

}  // namespace

int main(int count, char** arguments) {
    try {
        const Request request = parse({arguments + 1, arguments + std::max(count, 1)});
        request.command->run(findInTime(request), request.words);
        return 0;
    } catch (const Misuse& misuse) {
        return refuseCommandLine(commandLine(), misuse.what());
    } catch (const Failure& failure) {
        std::cerr << "hbbtv-control: " << failure.what() << std::endl;
        return kFailed;
    }
}
