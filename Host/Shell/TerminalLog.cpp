#include "Host/Shell/TerminalLog.h"

#include <iostream>

#include <glib.h>

namespace Shell {

namespace {

void printLine(const char*, GLogLevelFlags, const char* text, gpointer) {
    std::cerr << "hbbtv-shell: " << text << std::endl;
}

void printNothing(const char*, GLogLevelFlags, const char*, gpointer) {}

}  // namespace

void logToTerminal(bool quiet) {
    g_log_set_handler(G_LOG_DOMAIN, G_LOG_LEVEL_WARNING, printLine, nullptr);
    g_log_set_handler(G_LOG_DOMAIN, G_LOG_LEVEL_MESSAGE, quiet ? printNothing : printLine, nullptr);
    // GTK misses the accessibility service on a bus of the shell's own.
    g_log_set_handler("dbind", G_LOG_LEVEL_WARNING, printNothing, nullptr);
}

}  // namespace Shell
