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

template <typename Record>
std::vector<Record> readList(const JsonValue& value, Record (*readRecord)(const JsonValue&)) {
    std::vector<Record> records;
    for (const auto& element : value.elements())
        records.push_back(readRecord(element));
    return records;
}

std::string nonEmptyText(const JsonValue& value) {
    auto text = value.text();
    if (text.empty())
        value.refuse("must not be empty");
    return text;
}

Component readComponent(const JsonValue& value) {
    JsonObject object(value);
    Component component;
    object.require("type", [&](const JsonValue& type) {
        component.type = static_cast<ComponentType>(type.oneOf({"video", "audio", "subtitle"}));
    });
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
    object.finish();
    return component;
}

Descriptor readDescriptor(const JsonValue& value) {
    JsonObject object(value);
    Descriptor descriptor;
    object.require("bytes", [&](const JsonValue& bytes) {
        descriptor.bytes = bytes.bytes();
        const auto size = descriptor.bytes.size();
        if (size < 2 || size != 2u + descriptor.bytes[1])
            bytes.refuse("must be a tag, a length and as many bytes as the length says");
    });
    object.read("private_data_specifier", [&](const JsonValue& specifier) {
        descriptor.privateDataSpecifier = static_cast<std::uint32_t>(specifier.number(0, 0xFFFFFFFF));
    });
    object.finish();
    return descriptor;
}

Programme readProgramme(const JsonValue& value) {
    JsonObject object(value);
    Programme programme;
    object.require("name", [&](const JsonValue& name) { programme.name = name.text(); });
    object.require("start_minutes", [&](const JsonValue& start) {
        programme.startMinutes = static_cast<std::int32_t>(start.number(-10000, 10000));
    });
    object.require("duration_minutes", [&](const JsonValue& duration) {
        programme.durationMinutes = static_cast<std::uint32_t>(duration.number(1, 10000));
    });
    object.number("event_id", programme.eventId);
    object.text("id", programme.id);
    object.text("description", programme.description);
    object.number("parental_rating", programme.rating);
    object.read("descriptors",
                [&](const JsonValue& list) { programme.descriptors = readList(list, readDescriptor); });
    object.finish();
    return programme;
}

Channel readChannel(const JsonValue& value) {
    JsonObject object(value);
    Channel channel;
    object.require("id", [&](const JsonValue& id) {
        channel.id = static_cast<std::uint32_t>(id.number(1, 0xFFFFFFFF));
    });
    object.require("name", [&](const JsonValue& name) { channel.name = nonEmptyText(name); });
    object.require("id_type", [&](const JsonValue& idType) { channel.idType = readIdType(idType); });
    object.read("type", [&](const JsonValue& type) { channel.radio = type.oneOf({"tv", "radio"}) == 1; });
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
    object.read("tuning_error", [&](const JsonValue& error) {
        channel.tuningError = static_cast<std::int32_t>(error.number(0, 999));
    });
    object.read("components",
                [&](const JsonValue& list) { channel.components = readList(list, readComponent); });
    object.read("programmes",
                [&](const JsonValue& list) { channel.programmes = readList(list, readProgramme); });
    object.finish();
    if (channel.ccid.empty())
        channel.ccid = "ccid://1." + std::to_string(channel.id);
    const auto earlier = [](const Programme& left, const Programme& right) {
        return left.startMinutes < right.startMinutes;
    };
    std::stable_sort(channel.programmes.begin(), channel.programmes.end(), earlier);
    for (const auto& programme : channel.programmes) {
        const auto end = std::int64_t{programme.startMinutes} + programme.durationMinutes;
        const auto minutes = end - channel.programmes.front().startMinutes;
        channel.scheduleSeconds = std::max(channel.scheduleSeconds, minutes * 60);
    }
    return channel;
}

BroadcastApplication readBroadcastApplication(const JsonValue& value) {
    JsonObject object(value);
    BroadcastApplication application;
    object.require("id", [&](const JsonValue& id) { application.id = nonEmptyText(id); });
    object.require("url", [&](const JsonValue& url) { application.url = nonEmptyText(url); });
    object.finish();
    return application;
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

StreamEventSource readStreamEvent(const JsonValue& value) {
    JsonObject object(value);
    StreamEventSource source;
    object.require("url", [&](const JsonValue& url) { source.url = nonEmptyText(url); });
    object.require("name", [&](const JsonValue& name) { source.name = nonEmptyText(name); });
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
    object.finish();
    if (source.payloads.empty())
        source.payloads.emplace_back();
    return source;
}

DrmSystem readDrmSystem(const JsonValue& value) {
    JsonObject object(value);
    DrmSystem system;
    object.require("id", [&](const JsonValue& id) { system.id = nonEmptyText(id); });
    object.flag("replies", system.replies);
    object.number("result_code", system.resultCode, 0, 6);
    object.text("result_message", system.resultMessage);
    object.number("reply_ms", system.replyMs, 0, 3600000);
    object.finish();
    return system;
}

Profile readProfile(const JsonValue& value) {
    JsonObject object(value);
    Profile profile;
    object.number("profile", profile.profile);
    object.number("major", profile.major);
    object.number("minor", profile.minor);
    object.number("micro", profile.micro);
    object.finish();
    return profile;
}

AvProfile readAvProfile(const JsonValue& value) {
    JsonObject object(value);
    AvProfile profile;
    object.require("name", [&](const JsonValue& name) { profile.name = nonEmptyText(name); });
    object.require("type", [&](const JsonValue& type) { profile.type = nonEmptyText(type); });
    object.text("transport", profile.transport);
    object.text("drm_system_id", profile.drmSystemId);
    object.finish();
    return profile;
}

MediaItem readMediaItem(const JsonValue& value) {
    JsonObject object(value);
    MediaItem item;
    object.require("url", [&](const JsonValue& url) { item.url = nonEmptyText(url); });
    object.read("error",
                [&](const JsonValue& error) { item.error = static_cast<std::int32_t>(error.number(0, 6)); });
    object.number("duration_ms", item.durationMs, 0, 0x7FFFFFFF);
    object.read("components",
                [&](const JsonValue& list) { item.components = readList(list, readComponent); });
    object.finish();
    return item;
}

void readLocale(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    object.text("country", scenario.locale.country);
    object.text("ui_languages", scenario.locale.uiLanguages);
    object.text("audio_languages", scenario.locale.audioLanguages);
    object.text("subtitle_languages", scenario.locale.subtitleLanguages);
    object.finish();
}

void readClock(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    object.flag("valid", scenario.clock.valid);
    object.number("utc_offset_seconds", scenario.clock.utcOffsetSeconds, -50400, 50400);
    object.read("fixed_utc", [&](const JsonValue& utc) {
        scenario.clock.fixedUtc = static_cast<std::uint32_t>(utc.number(0, 0xFFFFFFFF));
    });
    object.finish();
}

void readKeys(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    object.number("maximum", scenario.keys.maximum, 0, 0x7ff);
    object.read("mask", [&](const JsonValue& mask) {
        scenario.keys.mask = static_cast<std::uint32_t>(mask.number(0, 0x7ff));
        if ((scenario.keys.mask & ~scenario.keys.maximum) != 0)
            mask.refuse("has bits that the maximum does not have");
    });
    object.finish();
}

void readApplications(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    object.texts("refused", scenario.applications.refused);
    object.texts("trusted_origins", scenario.applications.trustedOrigins);
    object.texts("boundary_origins", scenario.applications.boundaryOrigins);
    object.read("broadcast", [&](const JsonValue& list) {
        scenario.applications.broadcast = readList(list, readBroadcastApplication);
    });
    object.finish();
}

void readParental(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    object.number("lock_status", scenario.parental.lockStatus, 0, 255);
    object.number("minimum", scenario.parental.minimum, 0, 255);
    object.number("maximum", scenario.parental.maximum, 0, 255);
    object.finish();
}

void readDrm(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    object.text("ciplus_types", scenario.drm.ciPlusTypes);
    object.flag("sas_session_open", scenario.drm.sasSessionOpen);
    object.read("systems",
                [&](const JsonValue& list) { scenario.drm.systems = readList(list, readDrmSystem); });
    object.finish();
}

void readCapabilities(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    auto& capabilities = scenario.capabilities;
    object.read("profiles",
                [&](const JsonValue& list) { capabilities.profiles = readList(list, readProfile); });
    object.texts("ui_profiles", capabilities.uiProfiles);
    object.read("audio", [&](const JsonValue& list) { capabilities.audio = readList(list, readAvProfile); });
    object.read("video", [&](const JsonValue& list) { capabilities.video = readList(list, readAvProfile); });
    object.read("description", [&](const JsonValue& text) { capabilities.description = text.text(); });
    object.finish();
}

void readChannels(const JsonValue& value, Scenario& scenario) {
    std::set<std::uint32_t> ids;
    for (const auto& element : value.elements()) {
        auto channel = readChannel(element);
        if (!ids.insert(channel.id).second)
            element.refuse("another channel has the id " + std::to_string(channel.id));
        scenario.broadcast.channels.push_back(std::move(channel));
    }
}

void readBroadcast(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
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
    object.finish();
}

void readMedia(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    object.read("player", [&](const JsonValue& player) {
        scenario.media.player = static_cast<PlayerKind>(player.oneOf({"simulated", "real"}));
    });
    object.texts("mime_types", scenario.media.mimeTypes);
    object.number("connect_ms", scenario.media.connectMs, 0, 600000);
    object.number("connect_limit_ms", scenario.media.connectLimitMs, 100, 600000);
    object.number("maximum_players", scenario.media.maximumPlayers, 0, 64);
    object.text("user_agent", scenario.media.userAgent);
    object.read("items",
                [&](const JsonValue& list) { scenario.media.items = readList(list, readMediaItem); });
    object.finish();
}

void readSearch(const JsonValue& value, Scenario& scenario) {
    JsonObject object(value);
    object.number("duration_ms", scenario.search.durationMs, 0, 600000);
    object.read("outcome", [&](const JsonValue& outcome) {
        scenario.search.outcome = static_cast<SearchOutcome>(outcome.oneOf({"found", "failed", "never"}));
    });
    object.number("hours", scenario.search.hours, 0, 14 * 24);
    object.finish();
}

void readCarousel(const JsonValue& value, Scenario& scenario, const std::string& folder) {
    JsonObject object(value);
    object.number("reply_ms", scenario.carousel.replyMs, 0, 600000);
    object.read("folder", [&](const JsonValue& given) {
        const auto path = std::filesystem::path(folder) / nonEmptyText(given);
        std::error_code error;
        if (!std::filesystem::is_directory(path, error))
            given.refuse("there is no folder " + path.string());
        scenario.carousel.folder = std::filesystem::canonical(path, error).string();
        if (error)
            given.refuse("cannot open " + path.string() + ": " + error.message());
    });
    object.finish();
}

}  // namespace

const MediaItem* Scenario::mediaItem(const std::string& url) const {
    const auto found =
        std::find_if(media.items.begin(), media.items.end(),
                     [&url](const MediaItem& candidate) { return matchesPattern(url, candidate.url); });
    return found == media.items.end() ? nullptr : &*found;
}

const Channel* Scenario::channel(std::uint32_t id) const {
    const auto found = std::find_if(broadcast.channels.begin(), broadcast.channels.end(),
                                    [id](const Channel& channel) { return channel.id == id; });
    return found == broadcast.channels.end() ? nullptr : &*found;
}

Scenario readScenario(const nlohmann::json& document, const std::string& folder) {
    Scenario scenario;
    JsonObject object{JsonValue(document, "")};
    // For editors.
    object.read("$schema", [](const JsonValue& value) { (void)value.text(); });
    object.read("locale", [&](const JsonValue& value) { readLocale(value, scenario); });
    object.read("clock", [&](const JsonValue& value) { readClock(value, scenario); });
    object.read("keys", [&](const JsonValue& value) { readKeys(value, scenario); });
    object.read("applications", [&](const JsonValue& value) { readApplications(value, scenario); });
    object.read("parental", [&](const JsonValue& value) { readParental(value, scenario); });
    object.read("drm", [&](const JsonValue& value) { readDrm(value, scenario); });
    object.read("capabilities", [&](const JsonValue& value) { readCapabilities(value, scenario); });
    object.read("broadcast", [&](const JsonValue& value) { readBroadcast(value, scenario); });
    object.read("media", [&](const JsonValue& value) { readMedia(value, scenario); });
    object.read("stream_events",
                [&](const JsonValue& list) { scenario.streamEvents = readList(list, readStreamEvent); });
    object.read("search", [&](const JsonValue& value) { readSearch(value, scenario); });
    object.read("carousel", [&](const JsonValue& value) { readCarousel(value, scenario, folder); });
    object.finish();
    return scenario;
}

}  // namespace Receiver
