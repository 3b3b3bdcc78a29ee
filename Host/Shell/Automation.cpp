#include "Host/Shell/Automation.h"

namespace Shell {

using namespace Host;

Automation::Automation(WebKitWebContext* context, std::function<WebKitWebView*()> provideView)
    : m_context(retain(context)), m_provideView(std::move(provideView)) {
    webkit_web_context_set_automation_allowed(context, TRUE);
    g_signal_connect(context, "automation-started", G_CALLBACK(callback<&Automation::onStarted>), this);
}

Automation::~Automation() {
    g_signal_handlers_disconnect_by_data(m_context.get(), this);
    if (m_session)
        g_signal_handlers_disconnect_by_data(m_session.get(), this);
}

void Automation::onStarted(WebKitWebContext*, WebKitAutomationSession* session) {
    WebKitApplicationInfo* info = webkit_application_info_new();
    webkit_application_info_set_name(info, "hbbtv-shell");
    webkit_application_info_set_version(info, 1, 0, 0);
    webkit_automation_session_set_application_info(session, info);
    webkit_application_info_unref(info);
    m_session = retain(session);
    g_signal_connect(session, "create-web-view", G_CALLBACK(callback<&Automation::onCreateWebView>), this);
}

}  // namespace Shell
