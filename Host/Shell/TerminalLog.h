// The shell's own lines on the terminal: warnings, and messages that --quiet leaves out.
#pragma once

namespace Shell {

// From now on a log line is the program's name and the text.
void logToTerminal(bool quiet);

}  // namespace Shell
