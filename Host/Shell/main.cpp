// hbbtv-shell: a television browser for a desktop. Automation has to be known before anything of WebKit
// exists.
#include <iostream>

#include <gtk/gtk.h>

#include "Host/Shell/Browser.h"
#include "Host/Shell/Options.h"
#include "Host/Shell/SessionBus.h"

namespace {

constexpr int kBadUsage = 2;

int runBrowser(int argc, char** argv, Shell::Options options) {
    const Shell::SessionBus bus;
    if (!gtk_init_check(&argc, &argv)) {
        std::cerr << "hbbtv-shell: no display; xvfb-run gives one to a machine without a screen\n";
        return 1;
    }
    return Shell::Browser(std::move(options), bus.connection()).run();
}

}  // namespace

int main(int argc, char** argv) {
    Shell::ParsedOptions parsed = Shell::parseOptions({argv + 1, argv + argc});
    if (std::holds_alternative<Shell::HelpWanted>(parsed)) {
        std::cout << Shell::helpText();
        return 0;
    }
    if (const auto* bad = std::get_if<Shell::BadUsage>(&parsed)) {
        std::cerr << "hbbtv-shell: " << bad->reason << "\n" << Shell::usageText();
        return kBadUsage;
    }
    return runBrowser(argc, argv, std::get<Shell::Options>(std::move(parsed)));
}
