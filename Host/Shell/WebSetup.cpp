#include "Host/Shell/WebSetup.h"

#include <string_view>

#include "Host/Inc/ShellChannel.h"
#include "Host/Shell/Processes/InstalledFiles.h"
#include "Host/Shell/UserAgent.h"

namespace Shell {

using namespace Host;

extern const std::string_view s_televisionStyle;

namespace {

// An ephemeral session would also keep nothing, but WebKit withholds console messages there.
WebKitWebContext* makeContext(const Options& options, const std::string& folder) {
    const GObjectHandle<WebKitWebsiteDataManager> data(webkit_website_data_manager_new(
        "base-data-directory", folder.c_str(), "base-cache-directory", folder.c_str(), nullptr));
    if (options.ignoreTlsErrors)
        webkit_website_data_manager_set_tls_errors_policy(data.get(), WEBKIT_TLS_ERRORS_POLICY_IGNORE);
    if (options.profileFolder)
        webkit_cookie_manager_set_persistent_storage(
            webkit_website_data_manager_get_cookie_manager(data.get()), (folder + "/cookies").c_str(),
            WEBKIT_COOKIE_PERSISTENT_STORAGE_SQLITE);
    // A view keeps its web process from page to page, as on a television: the bundle's state lives in it.
    auto* context =
        WEBKIT_WEB_CONTEXT(g_object_new(WEBKIT_TYPE_WEB_CONTEXT, "website-data-manager", data.get(),
                                        "process-swap-on-cross-site-navigation-enabled", FALSE, nullptr));
    webkit_web_context_set_cache_model(context, WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
    return context;
}

// A recording has the console from there, too.
bool writesConsole(const Options& options) {
    return !options.quiet || options.recording;
}

std::string absolute(const std::string& path) {
    return GChars(g_canonicalize_filename(path.c_str(), nullptr)).get();
}

WebKitSettings* makeSettings(const Options& options) {
    WebKitSettings* settings = webkit_settings_new_with_settings(
        "enable-developer-extras", TRUE, "enable-page-cache", FALSE, "enable-smooth-scrolling", FALSE,
        "javascript-can-open-windows-automatically", FALSE, "media-playback-requires-user-gesture", FALSE,
        "enable-write-console-messages-to-stdout", writesConsole(options), nullptr);
    const std::string own = userAgentWithProfile(webkit_settings_get_user_agent(settings), options.profile);
    webkit_settings_set_user_agent(settings, options.userAgent.value_or(own).c_str());
    return settings;
}

// User level: pages can overrule it, and none of it can be seen from a page's own style sheets.
WebKitUserContentManager* makeContent() {
    WebKitUserContentManager* content = webkit_user_content_manager_new();
    WebKitUserStyleSheet* style =
        webkit_user_style_sheet_new(s_televisionStyle.data(), WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                    WEBKIT_USER_STYLE_LEVEL_USER, nullptr, nullptr);
    webkit_user_content_manager_add_style_sheet(content, style);
    webkit_user_style_sheet_unref(style);
    return content;
}

}  // namespace

WebSetup::WebSetup(const Options& options, std::string channelAddress)
    : m_automation(options.automation),
      m_showsConsole(writesConsole(options)),
      m_zoom(options.zoom),
      m_channelAddress(std::move(channelAddress)),
      m_adapterFolder(findAdapterFolder().value_or("")),
      m_bundle(findBundle().value_or("")),
      m_data(options.profileFolder ? nullptr : std::make_unique<TemporaryFolder>()),
      m_context(makeContext(options, m_data ? m_data->path() : absolute(*options.profileFolder))),
      m_content(makeContent()),
      m_settings(makeSettings(options)) {
    if (m_adapterFolder.empty())
        g_warning("no web-process adapter beside this program: pages run without the bundle");
    else if (m_bundle.empty())
        g_message("pages run without the bundle");
    g_signal_connect(m_context.get(), "initialize-web-extensions",
                     G_CALLBACK(callback<&WebSetup::onInitializeWebExtensions>), this);
}

WebSetup::~WebSetup() {
    g_signal_handlers_disconnect_by_data(m_context.get(), this);
}

BrowserView::Setup WebSetup::viewSetup() const {
    return {m_context.get(), m_content.get(), m_settings.get(), m_automation, m_zoom};
}

void WebSetup::onInitializeWebExtensions(WebKitWebContext* context) {
    if (m_adapterFolder.empty())
        return;
    webkit_web_context_set_web_extensions_directory(context, m_adapterFolder.c_str());
    webkit_web_context_set_web_extensions_initialization_user_data(
        context, g_variant_new(ShellChannel::kUserDataType, m_channelAddress.c_str(), m_bundle.c_str(),
                               static_cast<gboolean>(m_automation), static_cast<gboolean>(m_showsConsole)));
}

}  // namespace Shell
