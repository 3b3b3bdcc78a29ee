// The commands, each of which does one thing to a running television or tells something of it.
#pragma once

#include <string>

#include "Host/Control/Television.h"
#include "Host/Control/Words.h"

namespace Control {

struct Command {
    const char* name;
    const char* parameters;
    const char* help;
    size_t fewest;  // words
    size_t most;
    void (*run)(const Television& television, const Words& words);
};

// Null for none.
[[nodiscard]] const Command* findCommand(const std::string& name);

// For people, one line a command.
[[nodiscard]] std::string commandTable();

}  // namespace Control
