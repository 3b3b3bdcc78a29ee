#include "IPC/DBUS/Src/DBusCall.h"

#include <cstdarg>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DBusUtils.h"

// Records name the client's own file, line and operation, not this template.
#define LOG_AT_SITE(site, priority, colour, reset, format, ...)                              \
    HBBTV_LOG_RECORD_AT(HbbTVPlatform::BaseName((site).where.file_name()), (site).operation, \
                        static_cast<int>((site).where.line()), priority, colour, reset, format, __VA_ARGS__)
#define LOG_DEBUG_AT(site, format, ...) LOG_AT_SITE(site, kPlatformLogDebug, "", "", format, __VA_ARGS__)
#define LOG_ERROR_AT(site, format, ...) \
    LOG_AT_SITE(site, kPlatformLogError, "\033[31m", "\033[0m", format, __VA_ARGS__)

std::string TraceText(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const GCharPtr text(g_strdup_vprintf(format, arguments));
    va_end(arguments);
    return text.get();
}

namespace dbus_call {

void LogStart(const ServiceDescription& service, const CallSite& site) {
    LOG_DEBUG_AT(site, "%s::%s() - DBUS IPC Version, thread %p", service.client, service.client,
                 static_cast<void*>(g_thread_self()));
}

void LogCreation(const ServiceDescription& service, const CallSite& site) {
    LOG_DEBUG_AT(site, "%s::%s() %s", service.client, service.client, service.creation);
}

void LogCreationFailure(const char* what, const char* message, const CallSite& site) {
    LOG_ERROR_AT(site, "%s failed %s", what, message);
}

void LogConnecting(const ServiceDescription& service, const CallSite& site) {
    if (service.logsConnecting)
        LOG_DEBUG_AT(site, "%s::%s() call g_signal_connect", service.client, service.client);
}

void LogDone(const ServiceDescription& service, const CallSite& site, const void* proxy) {
    if (service.logsProxy)
        LOG_DEBUG_AT(site, "%s::%s() Done. s_proxy %p", service.client, service.client, proxy);
    else
        LOG_DEBUG_AT(site, "%s::%s() Done.", service.client, service.client);
}

void LogCall(const ServiceDescription& service, const CallSite& site) {
    if (service.failureClient == nullptr)
        LOG_DEBUG_AT(site, "%s", site.where.function_name());
    else
        LOG_DEBUG_AT(site, "%s::%s%s", service.client, site.operation, site.trace.c_str());
}

void LogCallFailure(const ServiceDescription& service, const CallSite& site, const char* message, int code) {
    if (service.failureClient == nullptr) {
        LOG_ERROR_AT(site, "%s failed \"%s\" with error code %d", site.where.function_name(), message, code);
        return;
    }
    const char* client = site.failureClient != nullptr ? site.failureClient : service.failureClient;
    LOG_ERROR_AT(site, "%s::%s failed \"%s\" with error code %d", client, site.operation, message, code);
}

GObjectPtr<GDBusConnection> Connect() {
    return GetDBus();
}

}  // namespace dbus_call
