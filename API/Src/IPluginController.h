// Events of the receiver, and the interface through which an object hears them.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <variant>

class SASMessage;
struct CDSMCCStreamEventData;
struct IPRResponse;
struct SDrmErrorParams;

enum EEventCode : int32_t {
    E_VBO_CHANNEL_CHANGE = 100,
    E_VBO_STATE_CHANGE = 101,
    E_VBO_UPDATE_LAYOUT = 102,
    E_VBO_DRM_RIGHTS_ERROR = 103,
    E_VBO_STREAM_EVENT = 104,
    E_VBO_PROGRAMMES_CHANGED = 105,
    E_VBO_PARENTAL_RATING = 106,
    E_VBO_GOING_DOWN = 107,
    E_VBO_COMPONENT_SELECT = 108,

    E_AVC_STATE = 200,
    E_AVC_PLAYSPEED = 201,
    E_AVC_PLAYPOSITION = 202,
    E_AVC_UPDATE_LAYOUT = 203,
    E_AVC_DRM_ERROR_MSG = 204,
    E_AVC_GOING_DOWN = 205,
    E_AVC_COMPONENT_SELECT = 206,

    E_SAS_MESSAGE = 300,
    E_SAS_SESSION_MESSAGE = 301,
    E_PLAYREADY_RESPONSE = 302,

    E_APP_LOW_MEMORY = 400,
    E_APP_LOAD_ERROR = 401,

    E_SAS_SESSION_STATE = 1000,
};

// The second value of channel-change and state events when nothing went wrong.
inline constexpr int32_t kEventSuccess = 1000;

// One event: what happened, to which player (0 addresses every object), and a payload that is either two
// 32-bit words or a pointer to a record. Which signal carries which code is the receiver's choice, so a
// code promises nothing about the payload: words that were not sent are 0, and GetRecord() is null for
// anything but that very kind of record.
struct event_t {
    // The record belongs to the sender and ends with the delivery; who keeps any of it copies it.
    using Record = std::variant<std::monostate, const SDrmErrorParams*, const SASMessage*,
                                const CDSMCCStreamEventData*, const IPRResponse*>;

    int32_t event = 0;
    uint32_t plugin_id = 0;
    std::array<uint32_t, 2> words{};
    Record record{};

    [[nodiscard]] static event_t Plain(int32_t code, uint32_t plugin) { return {code, plugin, {}, {}}; }
    [[nodiscard]] static event_t WithUnsigned(int32_t code, uint32_t plugin, uint32_t value) {
        return {code, plugin, {value, 0}, {}};
    }
    [[nodiscard]] static event_t WithSigned(int32_t code, uint32_t plugin, int32_t value) {
        return WithUnsigned(code, plugin, static_cast<uint32_t>(value));
    }
    [[nodiscard]] static event_t WithFloat(int32_t code, uint32_t plugin, float value) {
        return WithUnsigned(code, plugin, std::bit_cast<uint32_t>(value));
    }
    [[nodiscard]] static event_t WithData(int32_t code, uint32_t plugin, int32_t first, int32_t second) {
        return {code, plugin, {static_cast<uint32_t>(first), static_cast<uint32_t>(second)}, {}};
    }
    [[nodiscard]] static event_t WithRecord(int32_t code, uint32_t plugin, Record pointer) {
        return {code, plugin, {}, pointer};
    }

    // The words, read as what the event's meaning says they are.
    [[nodiscard]] uint32_t Unsigned(size_t word = 0) const { return words.at(word); }
    [[nodiscard]] int32_t Signed(size_t word = 0) const { return static_cast<int32_t>(words.at(word)); }
    [[nodiscard]] float Float() const { return std::bit_cast<float>(words[0]); }

    // Usage: event.GetRecord<CDSMCCStreamEventData>()
    template <typename T>
    [[nodiscard]] const T* GetRecord() const {
        const auto* pointer = std::get_if<const T*>(&record);
        return pointer != nullptr ? *pointer : nullptr;
    }
};

class IPluginController {
 public:
    // Called on the main thread. Subscribing, unsubscribing and destroying subscribers are allowed inside.
    virtual void OnEvent(event_t event) = 0;

 protected:
    // Subscribers are never destroyed through this interface.
    ~IPluginController() = default;
};
