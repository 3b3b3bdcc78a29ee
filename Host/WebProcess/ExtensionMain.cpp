// The entry that WebKitGTK looks up in a web-process extension.
#include "Host/Inc/ShellChannel.h"
#include "Host/WebProcess/BundleHost.h"

extern "C" G_MODULE_EXPORT void webkit_web_extension_initialize_with_user_data(WebKitWebExtension* extension,
                                                                               GVariant* userData) {
    if (!userData || !g_variant_is_of_type(userData, G_VARIANT_TYPE(Host::ShellChannel::kUserDataType))) {
        g_warning("no initialisation data from the shell: pages run without the bundle");
        return;
    }
    const char* address = nullptr;
    const char* bundlePath = nullptr;
    gboolean automation = FALSE;
    gboolean showsConsole = FALSE;
    g_variant_get(userData, "(&s&sbb)", &address, &bundlePath, &automation, &showsConsole);

    // Lives as long as the web process: WebKit's signals and the bundle refer to it until the end.
    static auto* host = new WebProcess::BundleHost(extension, address, automation, showsConsole);
    if (*bundlePath == '\0')
        return;
    if (const auto error = host->loadBundle(bundlePath))
        g_warning("cannot load the bundle %s: %s", bundlePath, error->c_str());
}
