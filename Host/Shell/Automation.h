// WebDriver: announces the shell as an automated browser and hands out views to control.
#pragma once

#include <functional>

#include <webkit2/webkit2.h>

#include "Host/Inc/GCallbacks.h"

namespace Shell {

class Automation : Host::Pinned {
 public:
    // `provideView` gives the view of a new browsing context.
    Automation(WebKitWebContext* context, std::function<WebKitWebView*()> provideView);
    ~Automation();

 private:
    void onStarted(WebKitWebContext*, WebKitAutomationSession* session);
    WebKitWebView* onCreateWebView(WebKitAutomationSession*) { return m_provideView(); }

    Host::GObjectHandle<WebKitWebContext> m_context;
    Host::GObjectHandle<WebKitAutomationSession> m_session;
    std::function<WebKitWebView*()> m_provideView;
};

}  // namespace Shell
