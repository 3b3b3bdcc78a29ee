#include "IPC/DBUS/Src/DBusCall.h"

#include <algorithm>
#include <atomic>
#include <cstdarg>
#include <memory>
#include <utility>
#include <vector>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DBusUtils.h"
#include "IPC/DBUS/Src/Patience.h"

// Records name the client's own file, line and operation, not this template.
#define LOG_AT_SITE(site, priority, colour, reset, format, ...)                              \
    HBBTV_LOG_RECORD_AT(HbbTVPlatform::BaseName((site).where.file_name()), (site).operation, \
                        static_cast<int>((site).where.line()), priority, colour, reset, format, __VA_ARGS__)
#define LOG_DEBUG_AT(site, format, ...) LOG_AT_SITE(site, kPlatformLogDebug, "", "", format, __VA_ARGS__)
#define LOG_ERROR_AT(site, format, ...) \
    LOG_AT_SITE(site, kPlatformLogError, "\033[31m", "\033[0m", format, __VA_ARGS__)

namespace {

constexpr int kMostAnswersDue = 64;

std::atomic<int> s_answersDue = 0;

std::string TextsOf(GDBusArgInfo* const* infos, std::initializer_list<dbus_call::SlotText> slots,
                    bool isInput) {
    std::vector<std::string> texts;
    for (const auto& each : slots) {
        if (std::string text = each.textOf(each.slot, isInput); !text.empty())
            texts.push_back(std::move(text));
    }
    return Named(infos, texts);
}

}  // namespace

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
        LOG_DEBUG_AT(site, "%s::%s%.4000s", service.client, site.operation, site.trace.c_str());
}

void LogCallFailure(const ServiceDescription& service, const CallSite& site, const GError& error) {
    if (service.failureClient == nullptr) {
        LOG_ERROR_AT(site, "%s failed \"%s\" with error code %d", site.where.function_name(), error.message,
                     error.code);
        return;
    }
    const char* client = site.failureClient != nullptr ? site.failureClient : service.failureClient;
    LOG_ERROR_AT(site, "%s::%s failed \"%s\" with error code %d", client, site.operation, error.message,
                 error.code);
}

void SetAbsent(GErrorPtr& error) {
    error.reset(g_error_new_literal(G_IO_ERROR, G_IO_ERROR_NOT_CONNECTED, "no proxy for the service"));
}

bool IsAbsent(const GError& error) {
    // The call that the bus closes the connection upon may be the first to hear of it.
    return g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_NOT_CONNECTED) != FALSE ||
           g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CLOSED) != FALSE;
}

bool IsSendable(std::initializer_list<size_t> sizes, GErrorPtr& error) {
    const auto* const tooLong = std::ranges::find_if(sizes, [](size_t size) { return size > kLongestText; });
    if (tooLong == sizes.end())
        return true;
    error.reset(g_error_new(G_IO_ERROR, G_IO_ERROR_MESSAGE_TOO_LARGE,
                            "an argument of %zu bytes is not sent, the most is %zu", *tooLong, kLongestText));
    return false;
}

void WarnOfCuts(const char* interface, const char* operation, std::initializer_list<bool> areCut) {
    if (std::ranges::find(areCut, true) != areCut.end())
        HBBTV_LOG_WARNING("%s.%s: a text with a NUL is cut there, D-Bus carries none", interface, operation);
}

RecordedCall::~RecordedCall() {
    if (HasBegun() && m_error)
        m_record.SetError(m_error->message);
}

void RecordedCall::Begin(const DBusLink& link, std::initializer_list<SlotText> slots) {
    m_method = link.MethodOf(m_operation);
    m_record.BeginLong(m_kind, std::string(m_interface) + '.' + m_operation,
                       TextsOf(m_method != nullptr ? m_method->in_args : nullptr, slots, true));
}

void RecordedCall::SetAnswer(std::initializer_list<SlotText> slots) {
    m_record.StopClock();
    m_record.SetResult(TextsOf(m_method != nullptr ? m_method->out_args : nullptr, slots, false));
}

Sent* NewSent(const ServiceDescription& service, const CallSite& site) {
    if (++s_answersDue > kMostAnswersDue) {
        --s_answersDue;
        return nullptr;
    }
    return new Sent{service, site};
}

void OnAnswer(GObject* proxy, GAsyncResult* result, gpointer sent) {
    const std::unique_ptr<Sent> call(static_cast<Sent*>(sent));
    --s_answersDue;
    GErrorPtr error;
    const GVariantPtr answer(g_dbus_proxy_call_finish(G_DBUS_PROXY(proxy), result, OutPointer(error)));
    if (error) {
        LogCallFailure(call->service, call->site, *error);
        if (HbbTVPlatform::PCRecord::IsOn()) {
            HbbTVPlatform::PCRecord record;
            record.Begin("send", std::string(call->service.interface) + '.' + call->site.operation, {});
            record.SetError(error->message);
        }
    }
    if (DBusLink::IsAnswer(error.get()))
        Patience::Instance().Answered();
}

GObjectPtr<GAsyncResult> AnswerTo(const std::function<void(GAsyncReadyCallback, gpointer)>& send,
                                  const std::function<void()>& meanwhile) {
    // Of its own, so that nothing else happens in the page while it is waited for.
    static thread_local GMainContext* const context = g_main_context_new();
    g_main_context_push_thread_default(context);
    GObjectPtr<GAsyncResult> answer;
    send([](GObject* /*proxy*/, GAsyncResult* result,
            gpointer it) { static_cast<GObjectPtr<GAsyncResult>*>(it)->reset(g_object_ref(result)); },
         &answer);
    g_main_context_pop_thread_default(context);
    meanwhile();
    while (!answer)
        g_main_context_iteration(context, TRUE);
    return answer;
}

GObjectPtr<GDBusConnection> Connect() {
    return GetDBus();
}

}  // namespace dbus_call
