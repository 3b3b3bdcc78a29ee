#include "Host/Receiver/CommandLine.h"

namespace Receiver {

CommandLine parseCommandLine(const std::vector<std::string>& arguments) {
    const std::string option = "--scenario";
    CommandLine parsed;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const auto& argument = arguments[i];
        std::string file;
        if (argument == "--help") {
            parsed.help = true;
            return parsed;
        }
        if (argument == option && i + 1 < arguments.size()) {
            file = arguments[++i];
        } else if (argument.starts_with(option + "=")) {
            file = argument.substr(option.size() + 1);
        } else if (argument != option) {
            parsed.problem = "unknown argument \"" + argument + "\"";
            return parsed;
        }
        if (file.empty() || !parsed.scenario.empty()) {
            parsed.problem = file.empty() ? "--scenario needs a file" : "--scenario is given twice";
            return parsed;
        }
        parsed.scenario = file;
    }
    if (parsed.scenario.empty())
        parsed.problem = "--scenario is missing";
    return parsed;
}

}  // namespace Receiver
