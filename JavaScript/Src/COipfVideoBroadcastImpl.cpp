#include "JavaScript/Src/COipfVideoBroadcastImpl.h"

#include <vector>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/CBroadcastPlayerWK_DBus.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "InjectedBundle/gen/js/jiChannelConfig.h"
#include "InjectedBundle/gen/js/jiParentalRatingCollection.h"
#include "InjectedBundle/gen/js/jiProgrammeCollection.h"
#include "InjectedBundle/gen/js/jiStreamEvent.h"
#include "JavaScript/Src/CChannelConfigImpl.h"
#include "JavaScript/Src/CChannelImpl.h"
#include "JavaScript/Src/CParentalRatingCollectionImpl.h"
#include "JavaScript/Src/CProgrammeCollectionImpl.h"
#include "JavaScript/Src/CStreamEventImpl.h"

namespace OipfJavaScript {

namespace {

// Pages read absent numbers of a channel as 4294967295 and hand them back: they must stay all ones.
int32_t ChannelNumber(JSContextRef context, JSValueRef value) {
    return static_cast<int32_t>(ToUint32(JSValueToNumber(context, value, nullptr)));
}

// The arguments of adding and of removing a stream-event listener.
struct StreamEventArguments {
    std::string targetURL;
    std::string eventName;
    JSValueRef listener = nullptr;
};

// False unless there are two texts and a function: for anything else nothing could ever be called.
bool Read(const CallArguments& call, StreamEventArguments& arguments) {
    if (call.count != 3 || !JSValueIsString(call.context, call.values[0]) ||
        !JSValueIsString(call.context, call.values[1]) || !JSValueIsObject(call.context, call.values[2]))
        return false;
    arguments.listener = call.values[2];
    return JSObjectIsFunction(call.context, JSValueToObject(call.context, arguments.listener, nullptr)) &&
           ToUtf8(call.context, call.values[0], arguments.targetURL, call.exception) &&
           ToUtf8(call.context, call.values[1], arguments.eventName, call.exception);
}

}  // namespace

COipfVideoBroadcastImpl::COipfVideoBroadcastImpl(JSContextRef context)
    : PlayerObject(context, CBroadcastPlayerWK::GetInstance(), ++s_instance_id),
      m_streamEvents(std::make_unique<CStreamEventHandler>()) {}

COipfVideoBroadcastImpl::~COipfVideoBroadcastImpl() {
    if (m_hold && m_player != nullptr)
        m_player->SendRelease(m_playerId);
}

bool COipfVideoBroadcastImpl::IsBroadcastRelated() const {
    return CDAEBrowserAPIWK::GetInstance()->IsBroadcastRelated();
}

std::unique_ptr<jiChannel> COipfVideoBroadcastImpl::GetCurrentChannel() {
    if (!IsBroadcastRelated()) {
        HBBTV_LOG_OBJECT(INFO, "app is not broadcast related");
        Fail();
        return nullptr;
    }
    uint32_t cacheId = 0;
    // Usual before a page binds; a receiver that does not answer is told of by the call.
    if (m_player == nullptr || !m_player->GetChannel(m_playerId, cacheId)) {
        HBBTV_LOG_OBJECT(INFO, "COipfVideoBroadcastImpl::%s failed", __func__);
        Fail();
        return nullptr;
    }
    return MakeBinding<jiChannel>(cacheId);
}

std::unique_ptr<jiProgrammeCollection> COipfVideoBroadcastImpl::GetProgrammes() {
    if (!IsBroadcastRelated()) {
        HBBTV_LOG_OBJECT(INFO, "app is not broadcast related");
        Fail();
        return nullptr;
    }
    uint32_t cacheId = 0;
    std::unique_ptr<IProgrammeCollection> received;
    if (m_player != nullptr && m_player->GetChannel(m_playerId, cacheId))
        received = CDAEBrowserAPIWK::GetInstance()->GetProgCollection(cacheId);
    if (!received) {
        HBBTV_LOG_OBJECT(ERROR, "failed GetProgCollection(%u)", cacheId);
        Fail();
        return nullptr;
    }
    return MakeBinding<jiProgrammeCollection>(*received, cacheId);
}

std::unique_ptr<jiChannelConfig> COipfVideoBroadcastImpl::GetChannelConfig() {
    HBBTV_LOG_ENTRY();
    if (!IsBroadcastRelated()) {
        Fail("getChannelConfig not available to broadcast independent applications");
        return nullptr;
    }
    return MakeBinding<jiChannelConfig>();
}

void COipfVideoBroadcastImpl::BindToCurrentChannel() {
    HBBTV_LOG_ENTRY();
    if (!IsBroadcastRelated())
        return Fail("bindToCurrentChannel not available to broadcast independent applications");
    if (m_player == nullptr)
        return;
    m_hold.Begin();
    m_player->BindToCurrentChannel(m_playerId);
}

JSValueRef COipfVideoBroadcastImpl::customCreateChannelObject(const CallArguments& call) {
    HBBTV_LOG_ENTRY();
    const auto isNumber = [&](size_t index) {
        return index < call.count && JSValueIsNumber(call.context, call.values[index]);
    };
    const auto number = [&](size_t index) { return ChannelNumber(call.context, call.values[index]); };
    if (call.count < 3 || call.count > 4 || !isNumber(0))
        return JSValueMakeNull(call.context);
    if (JSValueIsString(call.context, call.values[1])) {
        std::string dsd;
        if (!isNumber(2) || !Idl::Bytes::FromJS(__func__, call.context, call.values[1], dsd))
            return JSValueMakeNull(call.context);
        return MakeObject<jiChannel>(call.context, number(0), dsd, number(2));
    }
    if (!isNumber(1) || !isNumber(2) || !isNumber(3))
        return JSValueMakeNull(call.context);
    return MakeObject<jiChannel>(call.context, number(0), number(1), number(2), number(3));
}

JSValueRef COipfVideoBroadcastImpl::customSetChannel(const CallArguments& call) {
    HBBTV_LOG_ENTRY();
    const JSValueRef null = JSValueMakeNull(call.context);
    if (call.count < 1 || call.count > 3) {
        HBBTV_LOG_OBJECT(ERROR, "Invalid parameter count");
        return null;
    }
    // Pages give the null channel with and without the arguments that mean nothing for it.
    if (JSValueIsNull(call.context, call.values[0])) {
        if (m_player != nullptr)
            m_player->SetNullChannel(m_playerId, true);
        return null;
    }
    if (!JSValueIsObject(call.context, call.values[0])) {
        HBBTV_LOG_OBJECT(ERROR, "Invalid 1st argument");
        return null;
    }
    if (call.count > 1 && !JSValueIsBoolean(call.context, call.values[1])) {
        HBBTV_LOG_OBJECT(ERROR, "Invalid 2nd argument");
        return null;
    }
    const jiChannel* binding = jiChannel::FromJS(__func__, call.context, call.values[0]);
    if (binding == nullptr) {
        HBBTV_LOG_OBJECT(ERROR, "jiChannel == NULL");
        return null;
    }
    const CChannelImpl& channel = binding->Implementation();
    uint32_t cacheId = channel.CacheId();
    m_hold.Begin();
    if (m_player != nullptr &&
        !m_player->SetChannel(m_playerId, static_cast<EOipfChIdType>(channel.GetIdType()),
                              BytesToUtf8(channel.Dsd()), static_cast<int>(channel.GetOnid()),
                              static_cast<int>(channel.GetTsid()), static_cast<int>(channel.GetSid()),
                              cacheId))
        HBBTV_LOG_OBJECT(ERROR, "SetChannel failed");
    return null;
}

void COipfVideoBroadcastImpl::PrevChannel() {
    HBBTV_LOG_ENTRY();
    std::string ignored;
    m_hold.Begin();
    if (m_player != nullptr)
        m_player->NextOrPrevChannel(m_playerId, false, ignored);
}

void COipfVideoBroadcastImpl::NextChannel() {
    HBBTV_LOG_ENTRY();
    std::string ignored;
    m_hold.Begin();
    if (m_player != nullptr)
        m_player->NextOrPrevChannel(m_playerId, true, ignored);
}

void COipfVideoBroadcastImpl::SetFullScreen(bool fullscreen) {
    HBBTV_LOG_ENTRY();
    if (!IsBroadcastRelated()) {
        HBBTV_LOG_OBJECT(INFO, "app is not broadcast related");
        return Fail();
    }
    ChangeFullScreen(fullscreen);
}

void COipfVideoBroadcastImpl::Release() {
    HBBTV_LOG_ENTRY();
    if (m_player != nullptr)
        m_player->Release(m_playerId);
    m_hold.End();
}

void COipfVideoBroadcastImpl::ReleaseHeldPlayer() {
    if (m_player != nullptr)
        m_player->Release(m_playerId);
}

void COipfVideoBroadcastImpl::OnPageLeft() {
    PlayerObject::OnPageLeft();
    m_streamEvents = std::make_unique<CStreamEventHandler>();
}

void COipfVideoBroadcastImpl::Stop() {
    HBBTV_LOG_ENTRY();
    if (m_player != nullptr)
        m_player->Stop(m_playerId);
}

JSValueRef COipfVideoBroadcastImpl::customAddStreamEventListener(const CallArguments& call) {
    HBBTV_LOG_ENTRY();
    StreamEventArguments arguments;
    if (!Read(call, arguments)) {
        HBBTV_LOG_OBJECT(ERROR, "invalid parameters");
        return JSValueMakeNull(call.context);
    }
    const std::string id = "streamId" + std::to_string(++streamId);
    if (t_AddCallbackFunction(call.context, call.thisObject, id.c_str(), arguments.listener))
        m_streamEvents->AddEventListener(arguments.targetURL, arguments.eventName, id, arguments.listener);
    return JSValueMakeUndefined(call.context);
}

JSValueRef COipfVideoBroadcastImpl::customRemoveStreamEventListener(const CallArguments& call) {
    HBBTV_LOG_ENTRY();
    StreamEventArguments arguments;
    if (!Read(call, arguments)) {
        HBBTV_LOG_OBJECT(ERROR, "invalid parameters");
        return JSValueMakeNull(call.context);
    }
    // As a listener that is removed from one event goes from all events of its object.
    std::vector<std::string> ids;
    m_streamEvents->GetStreamEventIds(arguments.listener, ids);
    for (const std::string& id : ids)
        t_RemoveEventListener(call.context, call.thisObject, id.c_str(), arguments.listener, false);
    // Its other stream events stay subscribed, and so do their handlers.
    for (const std::string& id :
         m_streamEvents->RemoveEventListener(arguments.targetURL, arguments.eventName, arguments.listener))
        t_RemoveAllEventListeners(call.context, call.thisObject, id.c_str());
    return JSValueMakeUndefined(call.context);
}

void COipfVideoBroadcastImpl::SetMimeType(const std::string& type) {
    HBBTV_LOG_OBJECT(INFO, "%s", type.c_str());
}

void COipfVideoBroadcastImpl::SetAttributes(const AttributeMap& attributes) {
    for (const auto& [key, value] : attributes)
        HBBTV_LOG_OBJECT(INFO, "%s=%s", key.c_str(), value.c_str());
}

void COipfVideoBroadcastImpl::OnEvent(event_t event) {
    if (event.event < E_VBO_CHANNEL_CHANGE || event.event > E_VBO_COMPONENT_SELECT || !IsMine(event))
        return;
    const char* const name = IBroadcastPlayerCommon::EventName(event.event);
    HBBTV_LOG_OBJECT(INFO, "OnEvent(%s)", name);
    switch (event.event) {
        case E_VBO_CHANNEL_CHANGE:
            return OnChannelChange(event);
        case E_VBO_STATE_CHANGE:
            return OnStateChange(event);
        case E_VBO_UPDATE_LAYOUT:
            return UpdateLayout();
        case E_VBO_STREAM_EVENT:
            return OnStreamEvent(event.GetRecord<CDSMCCStreamEventData>());
        case E_VBO_PARENTAL_RATING:
            return OnParentalRating(event);
        case E_VBO_COMPONENT_SELECT:
            return OnComponentSelect(event);
        default:
            HBBTV_LOG_OBJECT(WARNING, "event %s not supported yet!!", name);
    }
}

void COipfVideoBroadcastImpl::OnChannelChange(const event_t& event) {
    if (event.Signed(1) != kEventSuccess) {
        if (JSContextRef context = ContextFor("ChannelChangeError")) {
            DispatchEvent("ChannelChangeError", "channel", JSValueMakeNumber(context, event.Unsigned(0)),
                          "error", JSValueMakeNumber(context, event.Signed(1)), nullptr);
        }
        return;
    }
    JSContextRef context = ContextFor("ChannelChangeSucceeded");
    if (context == nullptr)
        return;
    const uint32_t cacheId = event.Unsigned(0);
    const JSValueRef channel =
        cacheId != 0 ? MakeObject<jiChannel>(context, cacheId) : JSValueMakeNull(context);
    DispatchEvent("ChannelChangeSucceeded", "channel", channel, nullptr);
}

void COipfVideoBroadcastImpl::OnStateChange(const event_t& event) {
    m_playState = event.Signed(0);
    JSContextRef context = ContextFor("PlayStateChange");
    if (context == nullptr)
        return;
    const int32_t error = event.Signed(1);
    DispatchEvent("PlayStateChange", "state", JSValueMakeNumber(context, m_playState), "error",
                  error == kEventSuccess ? JSValueMakeUndefined(context) : JSValueMakeNumber(context, error),
                  nullptr);
}

void COipfVideoBroadcastImpl::OnStreamEvent(const CDSMCCStreamEventData* record) {
    if (record == nullptr) {
        HBBTV_LOG_OBJECT(ERROR, "str_event == NULL!");
        return;
    }
    std::vector<std::string> ids;
    m_streamEvents->GetStreamEventIds(*record, ids);
    if (record->status == E_EVENT_STATUS_ERROR) {
        HBBTV_LOG_OBJECT(ERROR, "stream event status: error");
        return;
    }
    if (ids.empty())
        return;
    const std::string text =
        WellFormedUtf8({reinterpret_cast<const char*>(record->data.data()), record->data.size()});
    std::string data;
    CStreamEventHandler::FormatHexData(record->data.data(), record->data.size(), data);
    const char* const status = CStreamEventHandler::FormatStatus(record->status);
    for (const std::string& id : ids) {
        JSContextRef context = ContextFor(id.c_str());
        if (context == nullptr)
            continue;
        DispatchEvent(id.c_str(), "streamevent",
                      MakeObject<jiStreamEvent>(context, record->name, data, text, status), nullptr);
    }
}

void COipfVideoBroadcastImpl::OnParentalRating(const event_t& event) {
    JSContextRef context = ContextFor("ParentalRatingChange");
    if (context == nullptr)
        return;
    auto ratings = MakeBinding<jiParentalRatingCollection>();
    ratings->Implementation().AddAge(event.Signed(0));
    const uint32_t drmSystem = event.Unsigned(1) & 0xFFFF;
    DispatchEvent("ParentalRatingChange", "contentID", JSValueMakeUndefined(context), "rating",
                  jiParentalRatingCollection::CreateObject(context, ratings.release(), nullptr),
                  "DRMSystemID",
                  drmSystem == 0 ? JSValueMakeNull(context) : JSValueMakeNumber(context, drmSystem), nullptr);
}

}  // namespace OipfJavaScript
