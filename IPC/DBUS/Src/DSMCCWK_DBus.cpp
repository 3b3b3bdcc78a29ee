#include "IPC/DBUS/Src/DSMCCWK_DBus.h"

#include <algorithm>
#include <atomic>
#include <climits>
#include <string_view>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/ByteArray.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "IPC/DBUS/Src/DBusUtils.h"
#include "gen/dbus/dsmcc-generated.h"

namespace {

constexpr char kService[] = "org.vantrel.hbbtv.DSMCC";

// Both last until the process ends: the loader that the callback belongs to may ask at any time.
DBusLink* s_link = nullptr;
// Requests may come from another thread than the one that delivers the responses.
std::atomic<DsmccFileCallback> dsmCallback = nullptr;

void on_signal(const char* signal, GVariant* parameters, gpointer /*data*/) {
    // Without a request there has been nobody to answer.
    const DsmccFileCallback callback = dsmCallback;
    if (std::string_view(signal) != "FileResponse" || callback == nullptr)
        return;
    guint handle = 0;
    const gchar* url = nullptr;
    GVariantPtr data;
    guint length = 0;
    gboolean status = FALSE;
    g_variant_get(parameters, "(u&s@ayub)", &handle, &url, static_cast<GVariant**>(OutPointer(data)), &length,
                  &status);
    // The length is the one that the service states, as the loader expects; it bounds its reads itself. One
    // that is too long for 32 bits with a sign is the longest, not a negative one.
    const auto stated = static_cast<long>(std::min<unsigned long>(length, LONG_MAX));
    callback(handle, url, BytesOf(data.get()).data(), stated, status != FALSE);
}

}  // namespace

void InitDSMCCDBus() {
    HBBTV_LOG_DEBUG("%s - DBUS IPC Version, thread", __func__);
    if (s_link == nullptr) {
        s_link = new DBusLink(kService, MakerOf(kService, dsmcc_proxy_new_sync), on_signal, nullptr);
        if (const GObjectPtr<GDBusConnection> connection = GetDBus()) {
            HBBTV_LOG_DEBUG("%s unittest_proxy_new_sync()", __func__);
            GErrorPtr error;
            s_link->Attach(connection.get(), error);
            if (error)
                HBBTV_LOG_ERROR("dsmcc_proxy_new_sync failed %s", error->message);
        }
    }
    HBBTV_LOG_DEBUG("%s Done.", __func__);
}

bool s_soupDsmccFileRequest(uint32_t handle, const char* url, DsmccFileCallback callback) {
    const WireString text(url);
    HBBTV_LOG_DEBUG("s_soupDsmccFileRequest %.4000s", text.c_str());
    bool accepted = false;
    if (s_link != nullptr) {
        DsmccFileCallback none = nullptr;
        dsmCallback.compare_exchange_strong(none, callback);
        GErrorPtr error;
        accepted = CallSync<bool>(kService, "FileRequest", *s_link, error, dsmcc_call_file_request_sync,
                                  handle, text.c_str(), kResult);
        if (error)
            HBBTV_LOG_ERROR("dsmcc_call_file_request_sync failed %s", error->message);
    }
    if (!accepted) {
        HBBTV_LOG_ERROR("s_soupDsmccFileRequest %.4000s FAILED", text.c_str());
        return false;
    }
    HBBTV_LOG_DEBUG("s_soupDsmccFileRequest %s OK", text.c_str());
    return true;
}
