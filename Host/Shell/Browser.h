// The shell itself: brings up what it needs, opens a view for each application, and leaves no trace when it
// ends.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Host/Inc/GCallbacks.h"
#include "Host/Shell/Automation.h"
#include "Host/Shell/Broadcast.h"
#include "Host/Shell/FolderWatch.h"
#include "Host/Shell/Keys/RemoteControl.h"
#include "Host/Shell/Keys/RemotePanel.h"
#include "Host/Shell/Options.h"
#include "Host/Shell/PageCheck.h"
#include "Host/Shell/Processes/ReceiverControl.h"
#include "Host/Shell/Processes/ReceiverProcess.h"
#include "Host/Shell/Processes/SessionBus.h"
#include "Host/Shell/View/BrowserView.h"
#include "Host/Shell/View/CarouselScheme.h"
#include "Host/Shell/View/Screen.h"
#include "Host/Shell/View/WebProcessChannel.h"
#include "Host/Shell/WebSetup.h"

namespace Shell {

class Browser final : public BrowserViewListener, public ReceiverEvents, Host::Pinned {
 public:
    // Without a connection to the bus there is no receiver.
    Browser(Options options, const SessionBus& bus);
    ~Browser();

    // Until the window is closed, the check is done or a signal ends it; the exit code.
    [[nodiscard]] int run();

 private:
    void viewDidChangeUrl(BrowserView& view) override;
    void viewDidFinishLoad(BrowserView& view) override;
    void viewDidFailLoad(BrowserView& view, bool isBeginning) override;
    void viewDidLoadAit(BrowserView& view, const std::string& url, const std::string& xml) override;
    void viewWantsToClose(BrowserView& view) override;
    void viewWantsRemotePanel() override;

    void receiverAppeared() override;
    void receiverVanished() override;
    void applicationStarted(std::int32_t id, const std::string& url) override;
    void applicationDestroyed(std::int32_t id) override;
    void applicationVisibilityChanged(std::int32_t id, bool visible) override;
    void keyMaskChanged(std::uint32_t mask) override;
    void keyPressed(std::uint32_t keyCode) override;

    template <int signal>
    gboolean onSignal();

    [[nodiscard]] std::optional<std::string> answerMessage(std::uint64_t page, const std::string& name,
                                                           const std::optional<std::string>& body);
    void greetReceiver();
    BrowserView& openView(std::int32_t id, const std::string& url);
    void closeView(std::int32_t id);
    [[nodiscard]] BrowserView* findView(std::int32_t id) const;
    [[nodiscard]] WebKitWebView* viewForAutomation();
    [[nodiscard]] bool handleKey(const GdkEventKey& event);
    // What the command line asks for, in the first view and alone.
    void startOver();
    // Nothing runs; the red key starts the application, or all over again.
    void waitForRed(BrowserView& view, const std::string& heading, const AitApplication& application);
    // True for a key that the shell itself waits for.
    [[nodiscard]] bool takeRed(std::uint32_t keyCode);
    void topChanged();
    void leave(int exitCode);

    Options m_options;
    std::int32_t m_firstViewId;
    // First, because it blocks: a signal then still ends the shell by itself.
    std::optional<ReceiverProcess> m_receiverProcess;
    ReceiverControl m_receiver;
    RemoteControl m_remoteControl;
    int m_exitCode = 0;
    Host::GMainLoopHandle m_loop;
    Host::GSourceHandle m_terminate;
    Host::GSourceHandle m_interrupt;
    WebProcessChannel m_channel;
    WebSetup m_web;
    Broadcast m_broadcast;
    CarouselScheme m_carousel;
    Screen m_screen;
    PageCheck m_check;
    std::map<std::int32_t, std::unique_ptr<BrowserView>> m_views;
    std::optional<Automation> m_automation;
    std::optional<RemotePanel> m_remotePanel;
    std::optional<FolderWatch> m_folderWatch;
    std::optional<AitApplication> m_behindRed;
    bool m_firstViewHandedOut = false;
};

}  // namespace Shell
