#include "JavaScript/Src/CAVComponentCollectionImpl.h"

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "API/Src/IAVComponent.h"
#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/AVEventHandlerWK_DBus.h"
#include "IPC/DBUS/Src/CBroadcastPlayerWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "JavaScript/Src/CAVComponentImpl.h"

namespace OipfJavaScript {

namespace {

const char* NameOf(int32_t type) {
    switch (type) {
        case E_COMPONENT_TYPE_VIDEO:
            return "E_COMPONENT_TYPE_VIDEO";
        case E_COMPONENT_TYPE_AUDIO:
            return "E_COMPONENT_TYPE_AUDIO";
        case E_COMPONENT_TYPE_SUBTITLE:
            return "E_COMPONENT_TYPE_SUBTITLE";
        default:
            return "unknown type";
    }
}

std::unique_ptr<CAVComponentImpl> FromRecord(const IAVComponent& record) {
    int32_t aspectRatio = 0;
    std::string language;
    bool audioDescription = false;
    int32_t audioChannels = 0;
    bool hearingImpaired = false;
    if (const auto* video = dynamic_cast<const IVideoComponent*>(&record)) {
        aspectRatio = video->aspectRatio;
    } else if (const auto* audio = dynamic_cast<const IAudioComponent*>(&record)) {
        language = audio->language;
        // The receiver marks an audio description as made for the impaired.
        audioDescription = audio->hearingImpaired;
        audioChannels = audio->audioChannels;
    } else if (const auto* subtitle = dynamic_cast<const ISbtComponent*>(&record)) {
        language = subtitle->language;
        hearingImpaired = subtitle->hearingImpaired;
    }
    return std::make_unique<CAVComponentImpl>(
        record.type, record.encoding, record.encrypted, aspectRatio, language, audioDescription,
        static_cast<uint32_t>(audioChannels), hearingImpaired, record.pid, record.componentTag);
}

// The two players have the same three operations.
template <class Player>
void Ask(Player& player, uint32_t playerId, int32_t type, AVComponentVector& records, bool activeOnly) {
    const bool all = type == CAVComponentCollectionImpl::kAllTypes;
    if (all || type == E_COMPONENT_TYPE_VIDEO)
        player.GetVideoComponents(playerId, records, activeOnly);
    if (all || type == E_COMPONENT_TYPE_AUDIO)
        player.GetAudioComponents(playerId, records, activeOnly);
    if (all || type == E_COMPONENT_TYPE_SUBTITLE)
        player.GetSbtComponents(playerId, records, activeOnly);
}

// The type that a page asks for with its one argument; none when that is a number which names no type.
std::optional<int32_t> AskedType(JSContextRef context, JSValueRef argument) {
    if (!JSValueIsNumber(context, argument)) {
        if (!JSValueIsNull(context, argument) && !JSValueIsUndefined(context, argument))
            HBBTV_LOG_ERROR("ERROR");
        return CAVComponentCollectionImpl::kAllTypes;
    }
    const double number = JSValueToNumber(context, argument, nullptr);
    if (std::isnan(number))
        return std::nullopt;
    const int32_t type = ToInt32(number);
    if (static_cast<uint32_t>(type) > E_COMPONENT_TYPE_SUBTITLE) {
        HBBTV_LOG_ERROR("Argument provided by application is invalid:%d!", type);
        return std::nullopt;
    }
    return type;
}

}  // namespace

std::vector<jiAVComponent> CAVComponentCollectionImpl::GetComponents(uint32_t playerId, int32_t componentType,
                                                                     bool activeOnly, bool broadcast) {
    AVComponentVector records;
    if (broadcast)
        Ask(*CBroadcastPlayerWK::GetInstance(), playerId, componentType, records, activeOnly);
    else
        Ask(*CAVEventHandlerWK::GetInstance(), playerId, componentType, records, activeOnly);

    std::vector<jiAVComponent> components;
    components.reserve(records.size());
    for (const auto& record : records) {
        HBBTV_LOG_INFO("%s::AVComponent :index:%d", jiAVComponentCollection::ID,
                       static_cast<int>(components.size()));
        HBBTV_LOG_INFO("%s::AVComponent Type:%s", jiAVComponentCollection::ID, NameOf(record->type));
        HBBTV_LOG_DEBUG("%s", record->ParamString().c_str());
        components.emplace_back(FromRecord(*record));
    }
    return components;
}

JSValueRef CAVComponentCollectionImpl::commonGetComponents(const CallArguments& call, uint32_t playerId,
                                                           bool activeOnly, bool broadcast) {
    if (call.count > 1) {
        HBBTV_LOG_ERROR("got wrong number of arguments:%d(expected 1 or 0 argument(s))",
                        static_cast<int>(call.count));
        return JSValueMakeNull(call.context);
    }
    const std::optional<int32_t> type = call.count == 0 ? kAllTypes : AskedType(call.context, call.values[0]);
    if (!type)
        return JSValueMakeNull(call.context);
    return MakeObject<jiAVComponentCollection>(call.context,
                                               GetComponents(playerId, *type, activeOnly, broadcast));
}

}  // namespace OipfJavaScript
