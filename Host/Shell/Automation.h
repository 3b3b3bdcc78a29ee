// WebDriver: announces the shell as an automated browser and hands out views to control.
#pragma once

#include <functional>

#include <webkit2/webkit2.h>

#include "Host/Inc/GHandles.h"

namespace Shell {

class Automation {
 public:
    // `provideView` gives the view of a new browsing context.
    Automation(WebKitWebContext* context, std::function<WebKitWebView*()> provideView);
    ~Automation();
    Automation(const Automation&) = delete;
    Automation& operator=(const Automation&) = delete;

 private:
    static void onStarted(WebKitWebContext* context, WebKitAutomationSession* session, gpointer self);
    static WebKitWebView* onCreateWebView(WebKitAutomationSession* session, gpointer self);

    Host::GObjectHandle<WebKitWebContext> m_context;
    Host::GObjectHandle<WebKitAutomationSession> m_session;
    std::function<WebKitWebView*()> m_provideView;
};

}  // namespace Shell
