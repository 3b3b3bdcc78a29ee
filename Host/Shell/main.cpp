// hbbtv-shell: a television browser for a desktop. Automation has to be known before anything of WebKit
// exists.
#include <iostream>
#include <memory>

#include <gtk/gtk.h>

#include "Host/Shell/Browser.h"
#include "Host/Shell/FolderServer.h"
#include "Host/Shell/Options.h"
#include "Host/Shell/Processes/SessionBus.h"
#include "Host/Shell/Recording/Recorder.h"
#include "Host/Shell/TerminalLog.h"

namespace {

int runBrowser(int argc, char** argv, Shell::Options options) {
    std::string problem;
    const auto server = Shell::serveFor(options, problem);
    if (!problem.empty())
        return Shell::refuseOptions(problem);
    std::unique_ptr<Shell::Recorder> recorder;
    if (options.recording) {
        recorder = Shell::Recorder::start(
            {*options.recording, options.ait.value_or(options.url), options.quiet != FALSE}, problem);
        if (!recorder)
            return Shell::refuseOptions(problem);
    }
    Shell::logToTerminal(options.quiet);
    const Shell::SessionBus bus(options.sessionBus);
    if (!gtk_init_check(&argc, &argv)) {
        std::cerr << "hbbtv-shell: no display; xvfb-run gives one to a machine without a screen\n";
        return 1;
    }
    return Shell::Browser(std::move(options), bus).run();
}

}  // namespace

int main(int argc, char** argv) {
    std::string problem;
    auto options = Shell::parseOptions({argv + 1, argv + argc}, problem);
    return options ? runBrowser(argc, argv, *std::move(options)) : Shell::refuseOptions(problem);
}
