// The arguments of hbbtv-receiver.
#pragma once

#include <string>
#include <vector>

namespace Receiver {

struct CommandLine {
    bool help = false;
    std::string scenario;
    // Not empty: the arguments are wrong, for this reason.
    std::string problem;
};

[[nodiscard]] CommandLine parseCommandLine(const std::vector<std::string>& arguments);

inline constexpr const char Usage[] =
    "Usage: hbbtv-receiver --scenario FILE.json [--help]\n"
    "Simulates a television receiver on the session bus, in the world that the scenario describes.\n"
    "Prints \"hbbtv-receiver: ready\" once all its names are owned; SIGTERM or SIGINT ends it.\n"
    "Exit codes: 0 ended as asked, 1 could not start or lost the bus, 2 wrong arguments.\n";

}  // namespace Receiver
