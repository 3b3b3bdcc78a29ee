#include "Host/Receiver/World/Scenario.h"

#include <algorithm>
#include <filesystem>
#include <set>

#include <nlohmann/json.hpp>

#include "Host/Receiver/World/JsonReader.h"
#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

struct IdType {
    const char* name;
    std::uint32_t value;
};

constexpr IdType kIdTypes[] = {
    {"ID_ANALOG", 0},  {"ID_DVB_C", 10},    {"ID_DVB_S", 11},    {"ID_DVB_T", 12},  {"ID_DVB_SI_DIRECT", 13},
    {"ID_DVB_C2", 14}, {"ID_DVB_S2", 15},   {"ID_DVB_T2", 16},   {"ID_ISDB_C", 20}, {"ID_ISDB_T", 21},
    {"ID_ATSC_T", 30}, {"ID_IPTV_SDS", 40}, {"ID_IPTV_URI", 41},
};

std::uint32_t readIdType(const JsonValue& value) {
    std::vector<std::string> names;
    for (const auto& idType : kIdTypes)
        names.emplace_back(idType.name);
    return kIdTypes[value.oneOf(names)].value;
}

void readComponent(JsonObject& object, Component& component) {
    object.required().choice("type", component.type, {"video", "audio", "subtitle"});
    object.text("encoding", component.encoding);
    object.flag("encrypted", component.encrypted);
    object.number("pid", component.pid, 0, 8191);
    object.number("ca_sid", component.caSid);
    object.number("tag", component.tag);
    object.text("language", component.language);
    if (component.type == ComponentType::Video)
        object.number("aspect_ratio", component.extra, 0, 1000);
    if (component.type == ComponentType::Audio) {
        object.number("channels", component.extra, 0, 64);
        object.flag("audio_description", component.impaired);
    }
    if (component.type == ComponentType::Subtitle)
        object.flag("hearing_impaired", component.impaired);
}

void readDescriptor(JsonObject& object, Descriptor& descriptor) {
    object.required().read("bytes", [&](const JsonValue& bytes) {
        descriptor.bytes = bytes.bytes();
        const auto size = descriptor.bytes.size();
        if (size < 2 || size != 2u + descriptor.bytes[1])
            bytes.refuse("must be a tag, a length and as many bytes as the length says");
    });
    object.number("private_data_specifier", descriptor.privateDataSpecifier, 0, 0xFFFFFFFF);
}

void readProgramme(JsonObject& object, Programme& programme) {
    object.required().text("name", programme.name);
    object.required().number("start_minutes", programme.startMinutes, -10000, 10000);
    object.required().number("duration_minutes", programme.durationMinutes, 1, 10000);
    object.number("event_id", programme.eventId);
    object.text("id", programme.id);
    object.text("description", programme.description);
    object.number("parental_rating", programme.rating);
    object.list("descriptors", programme.descriptors, readDescriptor);
}

void readChannel(JsonObject& object, Channel& channel) {
    object.required().number("id", channel.id, 1, 0xFFFFFFFF);
    object.name("name", channel.name);
    object.required().read("id_type", [&](const JsonValue& idType) { channel.idType = readIdType(idType); });
    object.choice("type", channel.radio, {"tv", "radio"});
    object.text("long_name", channel.longName);
    object.text("description", channel.description);
    object.number("nid", channel.networkId, 0, 65535);
    object.number("onid", channel.onid, 0, 65535);
    object.number("tsid", channel.tsid, 0, 65535);
    object.number("sid", channel.sid, 0, 65535);
    object.text("ccid", channel.ccid);
    object.flag("authorised", channel.authorised);
    object.flag("hidden", channel.hidden);
    object.flag("locked", channel.locked);
    object.flag("manual_block", channel.manualBlock);
    object.number("max_bit_rate", channel.maxBitRate);
    object.text("ip_broadcast_id", channel.ipBroadcastId);
    object.number("major_channel", channel.majorChannel);
    object.text("picture", channel.picture);
    object.number("tuning_error", channel.tuningError, 0, 999);
    object.list("components", channel.components, readComponent);
    object.list("programmes", channel.programmes, readProgramme);
    if (channel.ccid.empty())
        channel.ccid = "ccid://1." + std::to_string(channel.id);
    std::ranges::stable_sort(channel.programmes, {}, &Programme::startMinutes);
    for (const auto& programme : channel.programmes) {
        const auto end = std::int64_t{programme.startMinutes} + programme.durationMinutes;
        const auto minutes = end - channel.programmes.front().startMinutes;
        channel.scheduleSeconds = std::max(channel.scheduleSeconds, minutes * 60);
    }
}

void readBroadcastApplication(JsonObject& object, BroadcastApplication& application) {
    object.name("id", application.id);
    object.name("url", application.url);
}

// The value alone, or those of a list that has some.
std::vector<JsonValue> oneOrMore(const JsonValue& value) {
    if (!value.json().is_array())
        return {value};
    const auto all = value.elements();
    if (all.empty())
        value.refuse("must not be empty");
    return all;
}

void readStreamEvent(JsonObject& object, StreamEventSource& source) {
    object.name("url", source.url);
    object.name("name", source.name);
    object.number("event_id", source.eventId);
    object.number("period_ms", source.periodMs, 10, 86400000);
    object.read("data", [&](const JsonValue& data) {
        for (const auto& each : oneOrMore(data))
            source.payloads.push_back(each.bytes());
    });
    object.read("text", [&](const JsonValue& text) {
        if (!source.payloads.empty())
            text.refuse("the payload is given twice, as \"data\" and as \"text\"");
        for (const auto& each : oneOrMore(text)) {
            const auto payload = each.text();
            source.payloads.emplace_back(payload.begin(), payload.end());
        }
    });
    if (source.payloads.empty())
        source.payloads.emplace_back();
}

void readDrmSystem(JsonObject& object, DrmSystem& system) {
    object.name("id", system.id);
    object.flag("replies", system.replies);
    object.number("result_code", system.resultCode, 0, 6);
    object.text("result_message", system.resultMessage);
    object.number("reply_ms", system.replyMs, 0, 3600000);
}

void readProfile(JsonObject& object, Profile& profile) {
    object.number("profile", profile.profile);
    object.number("major", profile.major);
    object.number("minor", profile.minor);
    object.number("micro", profile.micro);
}

void readAvProfile(JsonObject& object, AvProfile& profile) {
    object.name("name", profile.name);
    object.name("type", profile.type);
    object.text("transport", profile.transport);
    object.text("drm_system_id", profile.drmSystemId);
}

void readMediaItem(JsonObject& object, MediaItem& item) {
    object.name("url", item.url);
    object.number("error", item.error, 0, 6);
    object.number("duration_ms", item.durationMs, 0, 0x7FFFFFFF);
    object.list("components", item.components, readComponent);
}

void readLocale(JsonObject& object, Scenario& scenario) {
    object.text("country", scenario.locale.country);
    object.text("ui_languages", scenario.locale.uiLanguages);
    object.text("audio_languages", scenario.locale.audioLanguages);
    object.text("subtitle_languages", scenario.locale.subtitleLanguages);
}

void readClock(JsonObject& object, Scenario& scenario) {
    object.flag("valid", scenario.clock.valid);
    object.number("utc_offset_seconds", scenario.clock.utcOffsetSeconds, -50400, 50400);
    object.number("fixed_utc", scenario.clock.fixedUtc, 0, 0xFFFFFFFF);
}

void readKeys(JsonObject& object, Scenario& scenario) {
    object.number("maximum", scenario.keys.maximum, 0, 0x7ff);
    object.read("mask", [&](const JsonValue& mask) {
        scenario.keys.mask = static_cast<std::uint32_t>(mask.number(0, 0x7ff));
        if ((scenario.keys.mask & ~scenario.keys.maximum) != 0)
            mask.refuse("has bits that the maximum does not have");
    });
}

void readApplications(JsonObject& object, Scenario& scenario) {
    object.texts("refused", scenario.applications.refused);
    object.texts("trusted_origins", scenario.applications.trustedOrigins);
    object.texts("boundary_origins", scenario.applications.boundaryOrigins);
    object.list("broadcast", scenario.applications.broadcast, readBroadcastApplication);
}

void readParental(JsonObject& object, Scenario& scenario) {
    object.number("lock_status", scenario.parental.lockStatus, 0, 255);
    object.number("minimum", scenario.parental.minimum, 0, 255);
    object.number("maximum", scenario.parental.maximum, 0, 255);
}

void readDrm(JsonObject& object, Scenario& scenario) {
    object.text("ciplus_types", scenario.drm.ciPlusTypes);
    object.flag("sas_session_open", scenario.drm.sasSessionOpen);
    object.list("systems", scenario.drm.systems, readDrmSystem);
}

void readCapabilities(JsonObject& object, Scenario& scenario) {
    auto& capabilities = scenario.capabilities;
    object.list("profiles", capabilities.profiles, readProfile);
    object.texts("ui_profiles", capabilities.uiProfiles);
    object.list("audio", capabilities.audio, readAvProfile);
    object.list("video", capabilities.video, readAvProfile);
    object.read("description", [&](const JsonValue& text) { capabilities.description = text.text(); });
}

void readChannels(const JsonValue& value, Scenario& scenario) {
    std::set<std::uint32_t> ids;
    for (const auto& element : value.elements()) {
        auto& channel = scenario.broadcast.channels.emplace_back();
        JsonObject::readAll(element, channel, readChannel);
        if (!ids.insert(channel.id).second)
            element.refuse("another channel has the id " + std::to_string(channel.id));
    }
}

void readBroadcast(JsonObject& object, Scenario& scenario) {
    auto& broadcast = scenario.broadcast;
    object.flag("related", broadcast.related);
    object.number("tune_ms", broadcast.tuneMs, 0, 600000);
    object.number("volume", broadcast.volume, 0, 100);
    object.read("channels", [&](const JsonValue& list) { readChannels(list, scenario); });
    object.read("current_channel", [&](const JsonValue& current) {
        broadcast.currentChannel = static_cast<std::uint32_t>(current.number(0, 0xFFFFFFFF));
        if (broadcast.currentChannel != 0 && scenario.channel(broadcast.currentChannel) == nullptr)
            current.refuse("there is no channel with the id " + std::to_string(broadcast.currentChannel));
    });
}

void readMedia(JsonObject& object, Scenario& scenario) {
    object.choice("player", scenario.media.player, {"simulated", "real"});
    object.texts("mime_types", scenario.media.mimeTypes);
    object.number("connect_ms", scenario.media.connectMs, 0, 600000);
    object.number("connect_limit_ms", scenario.media.connectLimitMs, 100, 600000);
    object.number("maximum_players", scenario.media.maximumPlayers, 0, 64);
    object.text("user_agent", scenario.media.userAgent);
    object.list("items", scenario.media.items, readMediaItem);
}

void readSearch(JsonObject& object, Scenario& scenario) {
    object.number("duration_ms", scenario.search.durationMs, 0, 600000);
    object.choice("outcome", scenario.search.outcome, {"found", "failed", "never"});
    object.number("hours", scenario.search.hours, 0, 14 * 24);
}

void readCarousel(JsonObject& object, Scenario& scenario, const std::string& folder) {
    object.number("reply_ms", scenario.carousel.replyMs, 0, 600000);
    object.read("folder", [&](const JsonValue& given) {
        const auto path = std::filesystem::path(folder) / given.name();
        std::error_code error;
        if (!std::filesystem::is_directory(path, error))
            given.refuse("there is no folder " + path.string());
        scenario.carousel.folder = std::filesystem::canonical(path, error).string();
        if (error)
            given.refuse("cannot open " + path.string() + ": " + error.message());
    });
}

}  // namespace

const MediaItem* Scenario::mediaItem(const std::string& url) const {
    const auto found = std::ranges::find_if(
        media.items, [&url](const MediaItem& candidate) { return matchesPattern(url, candidate.url); });
    return found == media.items.end() ? nullptr : &*found;
}

const Channel* Scenario::channel(std::uint32_t id) const {
    const auto found = std::ranges::find(broadcast.channels, id, &Channel::id);
    return found == broadcast.channels.end() ? nullptr : &*found;
}

Scenario readScenario(const nlohmann::json& document, const std::string& folder) {
    Scenario scenario;
    JsonObject object{JsonValue(document, "")};
    // For editors.
    object.read("$schema", [](const JsonValue& value) { (void)value.text(); });
    object.record("locale", scenario, readLocale);
    object.record("clock", scenario, readClock);
    object.record("keys", scenario, readKeys);
    object.record("applications", scenario, readApplications);
    object.record("parental", scenario, readParental);
    object.record("drm", scenario, readDrm);
    object.record("capabilities", scenario, readCapabilities);
    object.record("broadcast", scenario, readBroadcast);
    object.record("media", scenario, readMedia);
    object.list("stream_events", scenario.streamEvents, readStreamEvent);
    object.record("search", scenario, readSearch);
    object.record("carousel", scenario,
                  [&folder](JsonObject& carousel, Scenario& read) { readCarousel(carousel, read, folder); });
    object.finish();
    return scenario;
}

}  // namespace Receiver
