// The receiver's world as the scenario file describes it. The keys of the file stand in Scenario.cpp;
// Examples/scenarios/default.json shows them in use.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <tuple>
#include <vector>

#include <nlohmann/json_fwd.hpp>

namespace Receiver {

enum class ComponentType { Video = 0, Audio = 1, Subtitle = 2 };

struct Component {
    ComponentType type = ComponentType::Video;
    std::string encoding;
    bool encrypted = false;
    std::int16_t pid = 0;
    std::uint16_t caSid = 0;
    std::uint8_t tag = 0;
    std::string language;
    // Subtitles: for the hearing impaired; audio: audio description. The wire has one flag for both.
    bool impaired = false;
    // Video: aspect ratio in hundredths; audio: number of main channels, 5 for 5.1. The wire has one value
    // for both.
    std::int32_t extra = 0;
};

struct Descriptor {
    std::vector<std::uint8_t> bytes;
    std::optional<std::uint32_t> privateDataSpecifier;
};

struct Programme {
    std::uint16_t eventId = 0;
    std::string id;
    std::string name;
    std::string description;
    std::int32_t startMinutes = 0;  // from the start of the receiver
    std::uint32_t durationMinutes = 0;
    std::uint8_t rating = 0;
    std::vector<Descriptor> descriptors;
};

struct Channel {
    std::uint32_t id = 0;
    std::string name;
    std::string longName;
    std::string description;
    std::uint32_t idType = 0;
    std::uint32_t networkId = 0;
    std::uint32_t onid = 0;
    std::uint32_t tsid = 0;
    std::uint32_t sid = 0;
    bool radio = false;
    std::string ccid;
    bool authorised = true;
    bool hidden = false;
    bool locked = false;
    bool manualBlock = false;
    std::uint32_t maxBitRate = 0;
    std::string ipBroadcastId;
    std::uint32_t majorChannel = 0;
    std::string picture;  // a film: its address or file; empty: none
    // The error state that every attempt to tune ends with.
    std::optional<std::int32_t> tuningError;
    std::vector<Component> components;
    std::vector<Programme> programmes;  // by their start
    // From the first programme's start to the last one's end, when the schedule begins again.
    std::int64_t scheduleSeconds = 0;
};

struct BroadcastApplication {
    std::string id;  // "organisation.application" in hexadecimal, as dvb: addresses name it
    std::string url;
};

struct StreamEventSource {
    std::string url;  // pattern
    std::string name;
    std::int16_t eventId = 0;
    std::uint32_t periodMs = 1000;
    // One after another, and from the first again; never empty.
    std::vector<std::vector<std::uint8_t>> payloads;
};

struct DrmSystem {
    std::string id;
    bool replies = true;
    std::int32_t resultCode = 0;
    std::string resultMessage;
    std::uint32_t replyMs = 0;
};

// How a search ends that is not ended by its client.
enum class SearchOutcome { Found, Failed, Never };

struct Profile {
    std::uint16_t profile = 0;
    std::uint8_t major = 0;
    std::uint8_t minor = 0;
    std::uint8_t micro = 0;

    bool operator<(const Profile& other) const {
        return std::tie(profile, major, minor, micro) <
               std::tie(other.profile, other.major, other.minor, other.micro);
    }
};

struct AvProfile {
    std::string name;
    std::string type;
    std::string transport;
    std::string drmSystemId;
};

struct MediaItem {
    std::string url;  // pattern; the first item that matches tells how the medium plays
    std::optional<std::int32_t> error;
    std::uint32_t durationMs = 0;
    std::vector<Component> components;
};

enum class PlayerKind { Simulated, Real };

struct Scenario {
    struct {
        std::string country;
        std::string uiLanguages;
        std::string audioLanguages;
        std::string subtitleLanguages;
    } locale;
    struct {
        bool valid = true;
        std::int32_t utcOffsetSeconds = 0;
        std::optional<std::uint32_t> fixedUtc;
    } clock;
    struct {
        std::uint32_t mask = 0;
        std::uint32_t maximum = 0x7ff;
    } keys;
    struct {
        std::vector<std::string> refused;
        std::vector<std::string> trustedOrigins;
        std::vector<std::string> boundaryOrigins;
        std::vector<BroadcastApplication> broadcast;
    } applications;
    struct {
        std::int32_t lockStatus = 255;
        std::int32_t minimum = 4;
        std::int32_t maximum = 18;
    } parental;
    struct {
        std::string ciPlusTypes;
        bool sasSessionOpen = false;
        std::vector<DrmSystem> systems;
    } drm;
    struct {
        std::vector<Profile> profiles;
        std::vector<std::string> uiProfiles;
        std::vector<AvProfile> audio;
        std::vector<AvProfile> video;
        // Sent as it is, instead of the document that is made from the profiles.
        std::optional<std::string> description;
    } capabilities;
    struct {
        bool related = true;
        std::uint32_t currentChannel = 0;  // 0: none
        std::uint32_t tuneMs = 0;
        std::int32_t volume = 50;
        std::vector<Channel> channels;
    } broadcast;
    struct {
        // Real: what no item describes is fetched and decoded. Items are always simulated.
        PlayerKind player = PlayerKind::Simulated;
        std::vector<std::string> mimeTypes;
        std::uint32_t connectMs = 0;  // how long a simulated medium takes to connect
        // How long a real one may take, and may keep a player waiting for more.
        std::uint32_t connectLimitMs = 10000;
        std::uint32_t maximumPlayers = 4;
        // What servers of media are told; the shell says it anew.
        std::string userAgent = "HbbTV/1.2.1 (; Vantrel; Desktop; ; ; )";
        std::vector<MediaItem> items;
    } media;
    std::vector<StreamEventSource> streamEvents;
    struct {
        std::uint32_t durationMs = 0;
        SearchOutcome outcome = SearchOutcome::Found;
        // How far ahead schedules are known; 0: each programme is known once.
        std::uint32_t hours = 0;
    } search;
    struct {
        std::string folder;  // empty: no carousel
        std::uint32_t replyMs = 0;
    } carousel;

    [[nodiscard]] const Channel* channel(std::uint32_t id) const;
    // The first item whose pattern fits; null for none.
    [[nodiscard]] const MediaItem* mediaItem(const std::string& url) const;
};

// Throws ScenarioError. Relative folders are taken from the folder of the scenario file.
[[nodiscard]] Scenario readScenario(const nlohmann::json& document, const std::string& folder);

}  // namespace Receiver
