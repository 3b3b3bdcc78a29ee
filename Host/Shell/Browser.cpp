#include "Host/Shell/Browser.h"

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <utility>

#include <gdk/gdkkeysyms.h>
#include <glib-unix.h>

#include "Host/Inc/ShellChannel.h"

namespace Shell {

using namespace Host;

namespace {

// The receiver knows the views of all shells of its bus by their ids.
constexpr std::int32_t kViewsOfAShell = 1000;
// As for every bad argument.
constexpr int kRefusedScenario = 2;
// How a shell reports a program that a signal has ended.
constexpr int kSignalExitCode = 128;

bool isExit(unsigned keyval, unsigned state) {
    return keyval == GDK_KEY_HomePage || (keyval == GDK_KEY_Escape && (state & GDK_SHIFT_MASK) != 0);
}

std::optional<ReceiverProcess> runReceiver(const Options& options, GDBusConnection* bus) {
    if (!options.receiver || !bus)
        return std::nullopt;
    return std::optional<ReceiverProcess>(std::in_place, bus, options.scenario);
}

}  // namespace

Browser::Browser(Options options, const SessionBus& bus)
    : m_options(std::move(options)),
      m_firstViewId((bus.number() - 1) * kViewsOfAShell + 1),
      m_receiverProcess(runReceiver(m_options, bus.connection())),
      m_receiver(bus.connection(), *this),
      m_loop(g_main_loop_new(nullptr, FALSE)),
      m_terminate(g_unix_signal_add(SIGTERM, callback<&Browser::onSignal<SIGTERM>>, this)),
      m_interrupt(g_unix_signal_add(SIGINT, callback<&Browser::onSignal<SIGINT>>, this)),
      m_channel([this](const auto&... message) { return answerMessage(message...); }),
      m_web(m_options, m_channel.address()),
      m_broadcast(m_web.userAgent(), m_receiver),
      m_carousel(m_web.context(), m_channel, m_options.carouselLimitSeconds),
      m_screen(
          m_options.zoom, [this](const GdkEventKey& event) { return handleKey(event); },
          [this] { leave(0); }),
      m_check(m_options, m_screen, [this](int exitCode) { leave(exitCode); }) {
    greetReceiver();
    if (m_firstViewId != 1)
        g_message("another shell shows its views on this bus; those of this one count from %d",
                  m_firstViewId);
    if (m_options.reloadFolder)
        m_folderWatch.emplace(*m_options.reloadFolder, [this] {
            for (const auto& [id, view] : m_views)
                view->reload();
        });
    if (m_options.automation)
        m_automation.emplace(m_web.context(), [this] { return viewForAutomation(); });
}

Browser::~Browser() {
    while (!m_views.empty())
        closeView(m_views.begin()->first);
    // Before the receiver and the bus, whose end would be news to what still runs there.
    m_channel.waitForEnd();
}

int Browser::run() {
    // The receiver has told why.
    if (m_receiverProcess && m_receiverProcess->refusedScenario())
        return kRefusedScenario;
    startOver();
    g_main_loop_run(m_loop.get());
    return m_exitCode;
}

void Browser::startOver() {
    m_behindRed.reset();
    while (!m_views.empty() && m_views.rbegin()->first != m_firstViewId)
        closeView(m_views.rbegin()->first);
    const std::string& start = m_options.ait.value_or(m_options.url);
    const std::string url = start.empty() ? start : urlOf(start);
    m_broadcast.forgetBoundaries(m_firstViewId);
    BrowserView* first = findView(m_firstViewId);
    if (!first) {
        first = &openView(m_firstViewId, m_options.ait ? "" : url);
    } else if (!m_options.ait) {
        m_screen.setVisible(*first, true);
        first->load(url);
    }
    if (m_options.ait)
        first->loadAit(url);
    topChanged();
}

void Browser::waitForRed(BrowserView& view, const std::string& heading, const AitApplication& application) {
    m_behindRed = application;
    view.showPlainPage(heading,
                       application.name.empty() ? "Press red (F1)." : "Press red (F1): " + application.name);
    m_screen.setVisible(view, true);
    topChanged();
}

bool Browser::takeRed(std::uint32_t keyCode) {
    if (!m_behindRed || keyCode != kRed)
        return false;
    const AitApplication application = *std::exchange(m_behindRed, std::nullopt);
    BrowserView* view = m_screen.top();
    if (application.url.empty() || !view) {
        startOver();
        return true;
    }
    m_broadcast.setBoundaries(view->id(), application.boundaries);
    topChanged();
    view->load(application.url);
    return true;
}

void Browser::viewDidLoadAit(BrowserView& view, const std::string& url, const std::string& xml) {
    std::string reasons;
    const auto applications = m_broadcast.applicationsOf(xml, url, reasons);
    if (applications.empty()) {
        view.fail(url, reasons);
        return;
    }
    if (!reasons.empty())
        g_message("%s: %s", url.c_str(), reasons.c_str());
    const AitApplication& application = applications.front();
    const bool isOfBroadcast = m_options.ait && view.id() == m_firstViewId;
    if (isOfBroadcast)
        m_broadcast.announce(applications);
    if (isOfBroadcast && !application.startsItself()) {
        if (m_options.exitAfterLoad) {
            view.fail(url, "no application has AUTOSTART, and nobody is there to press the red key");
            return;
        }
        waitForRed(view, "The broadcast has an application", application);
        return;
    }
    m_broadcast.setBoundaries(view.id(), application.boundaries);
    topChanged();
    view.load(application.url);
}

void Browser::topChanged() {
    if (const BrowserView* top = m_screen.top())
        m_broadcast.changeTop(top->id());
}

void Browser::leave(int exitCode) {
    m_exitCode = exitCode;
    g_main_loop_quit(m_loop.get());
}

template <int signal>
gboolean Browser::onSignal() {
    leave(kSignalExitCode + signal);
    return G_SOURCE_CONTINUE;
}

BrowserView& Browser::openView(std::int32_t id, const std::string& url) {
    auto& view = m_views[id];
    view = std::make_unique<BrowserView>(id, m_web.viewSetup(), *this);
    m_receiver.registerView(id, url);
    m_screen.add(*view);
    topChanged();
    if (!url.empty())
        view->load(url);
    return *view;
}

void Browser::closeView(std::int32_t id) {
    const auto found = m_views.find(id);
    if (found == m_views.end())
        return;
    m_screen.remove(*found->second);
    m_views.erase(found);
    m_broadcast.forgetBoundaries(id);
    m_receiver.unregisterView(id);
    topChanged();
}

BrowserView* Browser::findView(std::int32_t id) const {
    const auto found = m_views.find(id);
    return found == m_views.end() ? nullptr : found->second.get();
}

WebKitWebView* Browser::viewForAutomation() {
    if (!std::exchange(m_firstViewHandedOut, true)) {
        if (const BrowserView* view = findView(m_firstViewId))
            return view->webView();
    }
    return openView(m_views.empty() ? m_firstViewId : m_views.rbegin()->first + 1, "").webView();
}

bool Browser::handleKey(const GdkEventKey& event) {
    BrowserView* view = m_screen.top();
    const bool isPress = event.type == GDK_KEY_PRESS;
    if (view && event.keyval == GDK_KEY_F12) {
        if (isPress)
            view->showInspector();
        return true;
    }
    if (event.keyval == GDK_KEY_F2 && (event.state & GDK_SHIFT_MASK) != 0) {
        if (isPress)
            viewWantsRemotePanel();
        return true;
    }
    if (view && event.keyval == GDK_KEY_r && (event.state & GDK_CONTROL_MASK) != 0) {
        if (isPress)
            view->reload();
        return true;
    }
    if (isExit(event.keyval, event.state)) {
        if (isPress)
            startOver();
        return true;
    }
    if (isPress && takeRed(keyCodeOf(event.keyval).value_or(0)))
        return true;
    return m_remoteControl.handleKeyEvent(view, event);
}

void Browser::receiverAppeared() {
    for (const auto& [id, view] : m_views)
        m_receiver.registerView(id, view->url());
    greetReceiver();
}

void Browser::greetReceiver() {
    m_remoteControl.setMask(m_receiver.keyMask().value_or(kAllKeyGroups));
    m_receiver.setUserAgent(m_web.userAgent());
}

void Browser::receiverVanished() {
    g_message("the receiver is gone; all keys reach the page");
    m_remoteControl.setMask(kAllKeyGroups);
}

void Browser::applicationStarted(std::int32_t id, const std::string& url) {
    if (BrowserView* view = findView(id)) {
        m_broadcast.forgetBoundaries(id);
        topChanged();
        view->load(url);
        return;
    }
    if (id >= m_firstViewId && id - m_firstViewId < kViewsOfAShell)
        openView(id, url);
}

// An empty screen would look like a fault: the last view stays.
void Browser::applicationDestroyed(std::int32_t id) {
    BrowserView* view = findView(id);
    if (!view)
        return;
    if (m_views.size() > 1) {
        closeView(id);
        return;
    }
    waitForRed(*view, "No application is running", {});
}

void Browser::applicationVisibilityChanged(std::int32_t id, bool visible) {
    if (BrowserView* view = findView(id))
        m_screen.setVisible(*view, visible);
    topChanged();
}

void Browser::keyMaskChanged(std::uint32_t mask) {
    m_remoteControl.setMask(mask);
}

void Browser::keyPressed(std::uint32_t keyCode) {
    if (!takeRed(keyCode))
        m_remoteControl.press(m_screen.top(), keyCode);
}

void Browser::viewDidChangeUrl(BrowserView& view) {
    g_info("view %d shows %s", view.id(), view.url().c_str());
    m_screen.tellLowest();
    m_receiver.changeUrl(view.id(), view.url());
}

void Browser::viewDidFinishLoad(BrowserView& view) {
    if (view.id() == m_firstViewId)
        m_check.pageDidLoad(view);
}

void Browser::viewDidFailLoad(BrowserView& view, bool isBeginning) {
    if (isBeginning)
        m_receiver.applicationFailed(view.id());
    m_check.pageDidFail();
}

void Browser::viewWantsToClose(BrowserView& view) {
    closeView(view.id());
    if (m_views.empty())
        leave(0);
}

void Browser::viewWantsRemotePanel() {
    const BrowserView* view = m_screen.top();
    if (!view)
        return;
    if (!m_remotePanel)
        m_remotePanel.emplace([this](std::uint32_t keyCode) {
            if (keyCode == RemotePanel::kExitButton)
                startOver();
            else
                keyPressed(keyCode);
        });
    m_remotePanel->toggle(view->widget());
}

std::optional<std::string> Browser::answerMessage(std::uint64_t page, const std::string& name,
                                                  const std::optional<std::string>& body) {
    const auto found = std::find_if(m_views.begin(), m_views.end(),
                                    [page](const auto& each) { return each.second->pageId() == page; });
    if (found == m_views.end())
        return std::nullopt;
    if (name == "GetViewId")
        return std::to_string(found->first);
    if (name == ShellChannel::kDriverKeyPressed || name == ShellChannel::kDriverKeyReleased) {
        const auto keyCode = std::strtoul(body.value_or("").c_str(), nullptr, 10);
        const bool passes = m_remoteControl.takeDriverKey(*found->second, static_cast<std::uint32_t>(keyCode),
                                                          name == ShellChannel::kDriverKeyPressed);
        return passes ? std::optional<std::string>("") : std::nullopt;
    }
    g_warning("no answer to the message \"%s\"", name.c_str());
    return std::nullopt;
}

}  // namespace Shell
