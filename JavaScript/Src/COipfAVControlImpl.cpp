#include "JavaScript/Src/COipfAVControlImpl.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "API/Src/SDrmErrorParams.h"
#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/AVEventHandlerWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/gen/js/jiParentalRatingCollection.h"
#include "JavaScript/Src/CParentalRatingCollectionImpl.h"
#include "JavaScript/Src/CParentalRatingImpl.h"
#include "JavaScript/Src/jiUtility.h"
#include "Wrapper/Src/SASMessage.h"
#include "Wrapper/Src/SASParentalControl.h"

namespace OipfJavaScript {

namespace {

// The error of a player that cannot be had: insufficient resources.
constexpr int32_t kNoResources = 3;

float ToFloat(double number) {
    constexpr double kMost = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(number, -kMost, kMost));
}

// A page may write anything; what is no text reads as its text, as it does for other elements. False when it
// has none, which is the page's own exception.
bool TextOf(JSContextRef context, JSValueRef value, std::string& text, JSValueRef* exception) {
    return JSValueIsNull(context, value) || JSValueIsUndefined(context, value) ||
           ToUtf8(context, value, text, exception);
}

// No medium stays none.
std::string Absolute(JSContextRef context, std::string url) {
    if (!url.empty())
        jiUtility::MakeAbsolutePath(context, url);
    return url;
}

}  // namespace

COipfAVControlImpl::COipfAVControlImpl(JSContextRef context)
    : PlayerObject(context, CAVEventHandlerWK::GetInstance(), ++s_idGen) {}

COipfAVControlImpl::~COipfAVControlImpl() {
    if (!m_hold)
        return;
    m_player->SendStop(m_playerId);
    m_player->SendReleasePlayer(m_playerId);
}

bool COipfAVControlImpl::MayResize(const char* dimension) {
    if (!m_fullScreen)
        return true;
    Fail(dimension, "Readonly in fullscreen mode");
    return false;
}

void COipfAVControlImpl::Resize(JSContextRef context, JSValueRef value, const char* dimension,
                                uint32_t& length) {
    if (!JSValueIsNumber(context, value) && !JSValueIsString(context, value))
        return Fail("TypeError", "Value is not number");
    // As other elements do: text that is no number changes nothing, and blank text is none.
    std::string text;
    const double number = JSValueToNumber(context, value, nullptr);
    if (std::isnan(number) || !ToUtf8(context, value, text, nullptr) ||
        text.find_first_not_of(" \t\n\f\r") == std::string::npos || !MayResize(dimension))
        return;
    length = ToUint32(number);
    UpdateLayout();
}

std::string COipfAVControlImpl::GetType() const {
    std::string type = m_type;
    if (m_playState != kStopped && m_playState != kFinished)
        m_player->GetMimeType(m_playerId, type);
    return type;
}

void COipfAVControlImpl::setCustomType(JSContextRef context, JSValueRef value, JSValueRef* exception) {
    std::string type;
    if (!TextOf(context, value, type, exception) || !m_player->CheckMimeType(type) || type == m_type)
        return;
    m_type = type;
    m_player->ChangeMimeType(m_playerId, m_type);
}

void COipfAVControlImpl::SetMimeType(const std::string& type) {
    if (m_player->CheckMimeType(type))
        m_type = type;
    else
        HBBTV_LOG_OBJECT(WARNING, "%s not allowed to run", type.c_str());
}

void COipfAVControlImpl::setCustomData(JSContextRef context, JSValueRef value, JSValueRef* exception) {
    std::string data;
    if (!TextOf(context, value, data, exception))
        return;
    m_data = Absolute(context, data);
    m_player->SetData(m_playerId, m_data);
}

void COipfAVControlImpl::SetAttributes(const AttributeMap& attributes) {
    for (const auto& [name, value] : attributes)
        m_attributes.insert_or_assign(name, value);
}

int64_t COipfAVControlImpl::GetPlayPosition() const {
    if (!HasProgress())
        return 0;
    auto position = static_cast<unsigned long>(m_playPosition);
    m_player->GetPlayPosition(m_playerId, position);
    return static_cast<int64_t>(position);
}

int64_t COipfAVControlImpl::GetPlayTime() const {
    unsigned long time = 0;
    if (HasProgress())
        m_player->GetPlayTime(m_playerId, time);
    return static_cast<int64_t>(time);
}

double COipfAVControlImpl::GetSpeed() const {
    if (m_playState != kPlaying)
        return 0;
    float speed = m_speed;
    m_player->GetSpeed(m_playerId, speed);
    return speed;
}

int32_t COipfAVControlImpl::GetNrTracks() const {
    int tracks = 0;
    m_player->GetNrTracks(m_playerId, tracks);
    return tracks;
}

int32_t COipfAVControlImpl::GetCurrentTrackIndex() const {
    int track = 0;
    m_player->GetCurrentTrack(m_playerId, track);
    return track;
}

bool COipfAVControlImpl::AcquirePlayer() {
    if (m_player->GetPlayer(m_playerId)) {
        m_hold.Begin();
        return true;
    }
    HBBTV_LOG_OBJECT(ERROR, "Failed to get player!!");
    OnEvent(event_t::WithData(E_AVC_STATE, m_playerId, kStopped, kNoResources));
    // What handlers called on this object has left its own errors in the block.
    ResetStatus();
    return false;
}

void COipfAVControlImpl::SendAttributes() {
    for (const auto& [name, value] : m_attributes)
        m_player->SetAttribute(m_playerId, name, value);
}

void COipfAVControlImpl::Start(float speed) {
    m_hold.Begin();
    m_player->Play(m_playerId, speed);
}

bool COipfAVControlImpl::Play(JSContextRef context, double speed) {
    HBBTV_LOG_ENTRY();
    HBBTV_LOG_OBJECT(INFO, "(%f)", speed);
    if (!m_player->FlagPlayerActive(m_playerId)) {
        if (!AcquirePlayer())
            return true;
        m_player->SetLocation(m_playerId, jiUtility::GetDocumentUrl(context));
        m_player->SetData(m_playerId, m_data);
        m_player->SetMimeType(m_playerId, m_type);
        SendAttributes();
    }
    Start(ToFloat(speed));
    return true;
}

// Sets a player up in another order than Play does: receivers rely on either.
bool COipfAVControlImpl::Queue(JSContextRef context, const std::optional<std::string>& url) {
    HBBTV_LOG_ENTRY();
    if (!url) {
        HBBTV_LOG_OBJECT(INFO, "(NULL) Clear any queue items");
        m_player->Queue(m_playerId, "");
        return true;
    }
    const std::string absolute = Absolute(context, *url);
    if (m_player->FlagPlayerActive(m_playerId)) {
        HBBTV_LOG_OBJECT(INFO, "Active so queue url");
        m_player->Queue(m_playerId, absolute);
        return true;
    }
    HBBTV_LOG_OBJECT(INFO, "Not active so get player");
    if (!AcquirePlayer())
        return true;
    HBBTV_LOG_OBJECT(INFO, "Setup player..");
    m_player->SetLocation(m_playerId, jiUtility::GetDocumentUrl(context));
    SendAttributes();
    m_player->SetMimeType(m_playerId, m_type);
    m_data = absolute;
    m_player->SetData(m_playerId, m_data);
    Start(1.0F);
    return true;
}

bool COipfAVControlImpl::Stop() {
    HBBTV_LOG_ENTRY();
    return m_player->Stop(m_playerId);
}

bool COipfAVControlImpl::Seek(int32_t position) {
    HBBTV_LOG_ENTRY();
    return m_player->Seek(m_playerId, position);
}

bool COipfAVControlImpl::SetVolume(int32_t volume) {
    HBBTV_LOG_ENTRY();
    return m_player->SetVolume(m_playerId, volume);
}

bool COipfAVControlImpl::Release() {
    HBBTV_LOG_ENTRY();
    m_player->Stop(m_playerId);
    m_player->ReleasePlayer(m_playerId);
    m_hold.End();
    return true;
}

void COipfAVControlImpl::ReleaseHeldPlayer() {
    m_player->ReleasePlayer(m_playerId);
}

void COipfAVControlImpl::OnEvent(event_t event) {
    if (!IsMine(event))
        return;
    switch (event.event) {
        case E_AVC_STATE:
            return OnState(event);
        case E_AVC_PLAYSPEED:
            return OnSpeed(event);
        case E_AVC_PLAYPOSITION:
            return OnPosition(event);
        case E_AVC_UPDATE_LAYOUT:
            return UpdateLayout();
        case E_AVC_DRM_ERROR_MSG:
            return OnDrmError(event);
        case E_AVC_GOING_DOWN:
            HBBTV_LOG_OBJECT(INFO, "Going down!");
            return;
        case E_AVC_COMPONENT_SELECT:
            return OnComponentSelect(event);
        case E_SAS_MESSAGE:
            return OnSASMessage(event.GetRecord<SASMessage>());
        case E_SAS_SESSION_MESSAGE:
            HBBTV_LOG_OBJECT(INFO, "SAS Session message!");
            return;
        default:
            return;
    }
}

void COipfAVControlImpl::OnState(const event_t& event) {
    m_playState = event.Signed(0);
    m_error = event.Signed(1);
    HBBTV_LOG_OBJECT(INFO, "(state:%d, error:%d)", m_playState, m_error);
    if (JSContextRef context = ContextFor("PlayStateChange")) {
        DispatchEvent("PlayStateChange", "state", JSValueMakeNumber(context, m_playState), "error",
                      JSValueMakeNumber(context, m_error), nullptr);
    }
}

void COipfAVControlImpl::OnSpeed(const event_t& event) {
    m_speed = event.Float();
    if (JSContextRef context = ContextFor("PlaySpeedChanged")) {
        DispatchEvent("PlaySpeedChanged", "speed", JSValueMakeNumber(context, static_cast<double>(m_speed)),
                      nullptr);
    }
}

void COipfAVControlImpl::OnPosition(const event_t& event) {
    m_playPosition = event.Unsigned(0);
    if (JSContextRef context = ContextFor("PlayPositionChanged")) {
        DispatchEvent("PlayPositionChanged", "position",
                      JSValueMakeNumber(context, static_cast<double>(m_playPosition)), nullptr);
    }
}

void COipfAVControlImpl::OnDrmError(const event_t& event) {
    JSContextRef context = ContextFor("DRMRightsError");
    if (context == nullptr)
        return;
    // A receiver can send the event without the record: then the state is the event's first word.
    SDrmErrorParams params;
    if (const auto* record = event.GetRecord<SDrmErrorParams>())
        params = *record;
    else
        params.errorState = event.Unsigned(0);
    // No system is named in either form.
    DispatchEvent("DRMRightsError", "errorState", JSValueMakeNumber(context, params.errorState), "contentID",
                  MakeString(context, params.contentId), "DRMSystemID", JSValueMakeNull(context),
                  "rightsIssuerURL", MakeString(context, params.rightsIssuerUrl), nullptr);
}

void COipfAVControlImpl::OnSASMessage(const SASMessage* message) {
    if (message == nullptr || message->Items().empty()) {
        HBBTV_LOG_OBJECT(ERROR, "Error SAS Message is empty!");
        return;
    }
    if (message->CommandId() != SASMessage::E_PARENTAL_CONTROL_INFO)
        return;
    const SASParentalControl info(*message);
    const char* const name = info.IsUnderstood() ? "ParentalRatingChange" : "ParentalRatingError";
    JSContextRef context = ContextFor(name);
    if (context == nullptr)
        return;
    auto ratings = MakeBinding<jiParentalRatingCollection>();
    for (const SASParentalControl::Rating& rating : info.Ratings()) {
        ratings->Implementation().AddParentalRating(CParentalRatingImpl::kDvbSi, std::to_string(rating.age),
                                                    rating.age, 0, WellFormedUtf8(rating.country));
    }
    const JSValueRef contentId = JSValueMakeUndefined(context);
    const JSValueRef collection =
        jiParentalRatingCollection::CreateObject(context, ratings.release(), nullptr);
    const JSValueRef system =
        MakeString(context, "urn:dvb:casystemid:" + std::to_string(message->CaSystemId()));
    if (info.IsUnderstood()) {
        DispatchEvent(name, "contentID", contentId, "ratings", collection, "DRMSystemID", system, "blocked",
                      JSValueMakeBoolean(context, info.IsBlocked()), nullptr);
    } else {
        DispatchEvent(name, "contentID", contentId, "ratings", collection, "DRMSystemID", system, nullptr);
    }
}

}  // namespace OipfJavaScript
