#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DBusCall.h"
#include "gen/dbus/channelcache-generated.h"

namespace {

constexpr ServiceDescription kService{
    .interface = "org.vantrel.hbbtv.IJSChannelCache",
    .client = "CJSChannelCacheWK",
    .failureClient = "CJSChannelCacheWK",
    .creation = "iavevent_handler_proxy_new_sync()",
    .creationFailure = "ijschannel_cache_proxy_new_sync",
};

}  // namespace

IJSChannelCacheCommon* IJSChannelCacheWK::GetInstance() {
    static CJSChannelCacheWK instance;
    return &instance;
}

CJSChannelCacheWK::CJSChannelCacheWK()
    : m_service(std::make_unique<DBusService<IJSChannelCache>>(kService, ijschannel_cache_proxy_new_sync,
                                                               nullptr, nullptr, CallSite(__func__))) {}

CJSChannelCacheWK::~CJSChannelCacheWK() {
    HBBTV_LOG_DEBUG("CJSChannelCacheWK::~CJSChannelCacheWK()");
}

bool CJSChannelCacheWK::RetainWhile(uint32_t id, const std::function<void()>& meanwhile) {
    bool isAnswered = false;
    const auto retain = [&](IJSChannelCache* proxy, guint channel, gboolean* result, GCancellable* none,
                            GError** error) {
        const auto send = [&](GAsyncReadyCallback onAnswer, gpointer data) {
            ijschannel_cache_call_retain(proxy, channel, none, onAnswer, data);
        };
        const auto answer = dbus_call::AnswerTo(send, meanwhile);
        const gboolean isDone = ijschannel_cache_call_retain_finish(proxy, result, answer.get(), error);
        isAnswered = DBusLink::IsAnswer(*error);
        return isDone;
    };
    const bool isKnown = m_service->Call<bool>("Retain", retain, id, kResult);
    if (!isAnswered)
        meanwhile();
    return isKnown;
}

void CJSChannelCacheWK::Release(uint32_t id) {
    m_service->Send(__func__, ijschannel_cache_call_release, id);
}

uint64_t CJSChannelCacheWK::Life() const {
    return m_service->Life();
}

bool CJSChannelCacheWK::GetChannelInfo(uint32_t id, std::string* name, std::string* longName,
                                       std::string* description, uint32_t* idType, uint32_t* nid,
                                       uint32_t* onid, uint32_t* tsid, uint32_t* sid, bool* chType,
                                       std::string* ccid, bool* authorised, bool* hidden, bool* locked,
                                       bool* manualBlock, uint32_t* maxBitRate, std::string* ipBroadcastId,
                                       uint32_t* majorChannel) {
    return m_service->Call<bool>(__func__, ijschannel_cache_call_get_channel_info_sync, id, Out(name),
                                 Out(longName), Out(description), Out(idType), Out(nid), Out(onid), Out(tsid),
                                 Out(sid), Out(chType), Out(ccid), Out(authorised), Out(hidden), Out(locked),
                                 Out(manualBlock), Out(maxBitRate), Out(ipBroadcastId), Out(majorChannel),
                                 kResult);
}
