// The shell itself: brings up what it needs, opens a view for each application, and leaves no trace when it
// ends.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Host/Inc/GHandles.h"
#include "Host/Shell/Automation.h"
#include "Host/Shell/BrowserView.h"
#include "Host/Shell/Options.h"
#include "Host/Shell/PageCheck.h"
#include "Host/Shell/Screen.h"
#include "Host/Shell/WebProcessChannel.h"
#include "Host/Shell/WebSetup.h"

namespace Shell {

class Browser final : public BrowserViewListener, public WebProcessMessages {
 public:
    explicit Browser(Options options);
    ~Browser();
    Browser(const Browser&) = delete;
    Browser& operator=(const Browser&) = delete;

    // Until the window is closed, the check is done or a signal ends it; the exit code.
    [[nodiscard]] int run();

 private:
    void viewDidChangeUrl(BrowserView& view) override;
    void viewDidFinishLoad(BrowserView& view) override;
    void viewDidFailLoad(BrowserView& view, const std::string& reason) override;
    void viewWantsToClose(BrowserView& view) override;

    void didReceiveMessage(std::uint64_t page, const std::string& name,
                           const std::optional<std::string>& body) override;
    [[nodiscard]] std::optional<std::string> answerMessage(std::uint64_t page,
                                                           const std::string& name) override;

    static gboolean onTerminate(gpointer self);
    static gboolean onInterrupt(gpointer self);

    BrowserView& openView(std::int32_t id);
    void closeView(std::int32_t id);
    [[nodiscard]] BrowserView* findView(std::int32_t id) const;
    [[nodiscard]] WebKitWebView* viewForAutomation();
    [[nodiscard]] bool handleKey(const GdkEventKey& event);
    void leave(int exitCode);

    Options m_options;
    Host::GMainLoopHandle m_loop;
    Host::GSourceHandle m_terminate;
    Host::GSourceHandle m_interrupt;
    int m_exitCode = 0;
    WebProcessChannel m_channel;
    WebSetup m_web;
    Screen m_screen;
    PageCheck m_check;
    std::map<std::int32_t, std::unique_ptr<BrowserView>> m_views;
    std::optional<Automation> m_automation;
    bool m_firstViewHandedOut = false;
};

}  // namespace Shell
