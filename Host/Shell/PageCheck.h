// --screenshot and --exit-after-load: waits until a page has loaded, given its verdict and settled on the
// screen.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "Host/Shell/Options.h"
#include "Host/Shell/View/BrowserView.h"
#include "Host/Shell/View/Screen.h"

namespace Shell {

class PageCheck : Host::Pinned {
 public:
    // `leave` is called with the exit code, with --exit-after-load only.
    PageCheck(const Options& options, Screen& screen, std::function<void(int)> leave);
    ~PageCheck();

    // Of the first view. A page that goes on to another one is judged by that one.
    void pageDidLoad(BrowserView& view);
    // Of any view; why has been told.
    void pageDidFail();

 private:
    enum class Step { Verdict, Frames };

    static void onScriptDone(GObject* view, GAsyncResult* result, gpointer self);
    gboolean onTimeout();
    gboolean onPainted();

    void runStep(Step step);
    void stepDone(const std::string& answer);
    void finish();
    void fail(const std::string& reason);
    void restartClock();

    const Options& m_options;
    Screen& m_screen;
    std::function<void(int)> m_leave;
    Host::GObjectHandle<WebKitWebView> m_view;
    Host::GObjectHandle<GCancellable> m_cancellable;
    Host::GSourceHandle m_clock;
    Host::GSourceHandle m_painting;  // Until the window shows what the page has painted.
    Step m_step = Step::Verdict;
    std::string m_verdict = "none";
    bool m_failed = false;
    bool m_left = false;
};

}  // namespace Shell
