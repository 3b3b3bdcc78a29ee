// What all views share: one web context, its settings, and the web processes' adapter and bundle.
#pragma once

#include <memory>
#include <string>

#include <webkit2/webkit2.h>

#include "Host/Inc/GCallbacks.h"
#include "Host/Shell/Options.h"
#include "Host/Shell/Processes/TemporaryFolder.h"
#include "Host/Shell/View/BrowserView.h"

namespace Shell {

class WebSetup : Host::Pinned {
 public:
    // Web processes connect to the address for the bundle's messages.
    WebSetup(const Options& options, std::string channelAddress);
    ~WebSetup();

    [[nodiscard]] WebKitWebContext* context() const { return m_context.get(); }
    [[nodiscard]] BrowserView::Setup viewSetup() const;
    [[nodiscard]] std::string userAgent() const { return webkit_settings_get_user_agent(m_settings.get()); }

 private:
    void onInitializeWebExtensions(WebKitWebContext* context);

    bool m_automation;
    bool m_showsConsole;
    double m_zoom;
    std::string m_channelAddress;
    std::string m_adapterFolder;
    std::string m_bundle;                     // Empty for none.
    std::unique_ptr<TemporaryFolder> m_data;  // Null when what pages store is to last.
    Host::GObjectHandle<WebKitWebContext> m_context;
    Host::GObjectHandle<WebKitUserContentManager> m_content;
    Host::GObjectHandle<WebKitSettings> m_settings;
};

}  // namespace Shell
