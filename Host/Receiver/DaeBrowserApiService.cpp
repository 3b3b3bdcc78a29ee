// org.vantrel.hbbtv.IDAEBrowserAPI: applications, keys, preferences, programmes and what else is no player.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "Host/Receiver/World/Capabilities.h"
#include "gen/dbus/daebrowserapi-generated.h"

namespace Receiver {

namespace {

std::vector<std::uint32_t> channelIds(const Scenario& scenario) {
    std::vector<std::uint32_t> ids;
    for (const auto& channel : scenario.broadcast.channels)
        ids.push_back(channel.id);
    return ids;
}

std::vector<std::vector<std::uint8_t>> programDescriptors(const Scenario& scenario, std::uint32_t channelId,
                                                          std::uint16_t eventId, std::int32_t tag,
                                                          std::int32_t extendedTag, std::int32_t specifier) {
    const auto* channel = scenario.channel(channelId);
    if (channel == nullptr)
        return {};
    // The first of the preferred languages; codes have three letters.
    const auto language = scenario.locale.uiLanguages.substr(0, 3);
    return descriptors(*channel, eventId, {tag, extendedTag, specifier}, language, scenario.locale.country);
}

std::tuple<std::uint32_t, bool> currentChannel(const Scenario& scenario) {
    const auto id = scenario.broadcast.currentChannel;
    return {id, id != 0};
}

std::tuple<std::uint32_t, std::int32_t, bool> time(World& world) {
    const auto& clock = world.scenario().clock;
    return {static_cast<std::uint32_t>(world.utc()), clock.utcOffsetSeconds, clock.valid};
}

std::tuple<std::vector<std::uint32_t>, std::uint16_t, bool> channelsAndEvent(World& world, const char* url) {
    std::uint16_t eventId = 0;
    const auto ids = world.channelsAt(url, eventId);
    return {ids, eventId, !ids.empty()};
}

template <bool Visible>
void setVisible(Applications& applications, std::int32_t viewId) {
    applications.setVisible(viewId, Visible);
}

void setKeyMask(World& world, std::int32_t mask) {
    world.setKeyMask(static_cast<std::uint32_t>(mask));
}

void addProfile(World& world, std::uint16_t profile, std::uint8_t major, std::uint8_t minor,
                std::uint8_t micro) {
    world.addProfile({profile, major, minor, micro});
}

bool hasProfile(World& world, std::uint16_t profile, std::uint8_t major, std::uint8_t minor,
                std::uint8_t micro) {
    return world.hasProfile({profile, major, minor, micro});
}

std::int32_t sendDrmMessage(Caller& caller, const char*, const char*, const char* drmSystemId) {
    return caller.sendDrmMessage(drmSystemId);
}

void fillApplications(IDAEBrowserAPIIface& table) {
    table.handle_create_application =
        answer<idaebrowser_api_complete_create_application, &Caller::createApplication>;
    table.handle_destroy_application =
        answer<idaebrowser_api_complete_destroy_application, &Applications::destroy>;
    table.handle_show = answer<idaebrowser_api_complete_show, &setVisible<true>>;
    table.handle_hide = answer<idaebrowser_api_complete_hide, &setVisible<false>>;
    table.handle_is_broadcast_related =
        answer<idaebrowser_api_complete_is_broadcast_related,
               [](const Scenario& scenario) { return scenario.broadcast.related; }>;
    table.handle_is_trusted = answer<idaebrowser_api_complete_is_trusted, &Applications::isTrusted>;
    table.handle_is_urlin_app_boundary =
        answer<idaebrowser_api_complete_is_urlin_app_boundary, &Applications::isInBoundary>;
    table.handle_set_key_mask = answer<idaebrowser_api_complete_set_key_mask, &setKeyMask>;
    table.handle_get_key_mask = answer<idaebrowser_api_complete_get_key_mask,
                                       [](const Scenario& scenario) { return scenario.keys.mask; }>;
    table.handle_get_max_key_mask = answer<idaebrowser_api_complete_get_max_key_mask,
                                           [](const Scenario& scenario) { return scenario.keys.maximum; }>;
}

void fillReceiver(IDAEBrowserAPIIface& table) {
    table.handle_set_profile_support = answer<idaebrowser_api_complete_set_profile_support, &addProfile>;
    table.handle_is_profile_supported = answer<idaebrowser_api_complete_is_profile_supported, &hasProfile>;
    table.handle_get_xml_capabilities =
        answer<idaebrowser_api_complete_get_xml_capabilities, &capabilitiesXml>;
    table.handle_has_capability = answer<idaebrowser_api_complete_has_capability, &hasCapability>;
    table.handle_get_preferred_audio_lang =
        answer<idaebrowser_api_complete_get_preferred_audio_lang,
               [](const Scenario& scenario) { return scenario.locale.audioLanguages; }>;
    table.handle_get_preferred_subtitle_lang =
        answer<idaebrowser_api_complete_get_preferred_subtitle_lang,
               [](const Scenario& scenario) { return scenario.locale.subtitleLanguages; }>;
    table.handle_get_preferred_uilang =
        answer<idaebrowser_api_complete_get_preferred_uilang,
               [](const Scenario& scenario) { return scenario.locale.uiLanguages; }>;
    table.handle_get_country_id = answer<idaebrowser_api_complete_get_country_id,
                                         [](const Scenario& scenario) { return scenario.locale.country; }>;
    table.handle_get_time = answer<idaebrowser_api_complete_get_time, &time>;
    table.handle_get_parental_lock_status =
        answer<idaebrowser_api_complete_get_parental_lock_status,
               [](const Scenario& scenario) { return scenario.parental.lockStatus; }>;
    table.handle_get_dvbsi_parental_lock_max_val =
        answer<idaebrowser_api_complete_get_dvbsi_parental_lock_max_val,
               [](const Scenario& scenario) { return scenario.parental.maximum; }>;
    table.handle_get_dvbsi_parental_lock_min_val =
        answer<idaebrowser_api_complete_get_dvbsi_parental_lock_min_val,
               [](const Scenario& scenario) { return scenario.parental.minimum; }>;
    table.handle_get_ciplus_drm_type =
        answer<idaebrowser_api_complete_get_ciplus_drm_type,
               [](const Scenario& scenario) { return scenario.drm.ciPlusTypes; }>;
    table.handle_is_sassession_open =
        answer<idaebrowser_api_complete_is_sassession_open,
               [](const Scenario& scenario) { return scenario.drm.sasSessionOpen; }>;
    table.handle_send_drmmessage = answer<idaebrowser_api_complete_send_drmmessage, &sendDrmMessage>;
}

void fillBroadcast(IDAEBrowserAPIIface& table) {
    table.handle_current_channel = answer<idaebrowser_api_complete_current_channel, &currentChannel>;
    table.handle_get_channel_list = answer<idaebrowser_api_complete_get_channel_list, &channelIds>;
    table.handle_get_prog_collection =
        answer<idaebrowser_api_complete_get_prog_collection, &World::programmes>;
    table.handle_get_program_descriptors =
        answer<idaebrowser_api_complete_get_program_descriptors, &programDescriptors>;
    table.handle_get_channels_and_event_from_url =
        answer<idaebrowser_api_complete_get_channels_and_event_from_url, &channelsAndEvent>;
    table.handle_stream_event_subscribe =
        answer<idaebrowser_api_complete_stream_event_subscribe, &StreamEvents::subscribe>;
    table.handle_stream_event_unsubscribe =
        answer<idaebrowser_api_complete_stream_event_unsubscribe, &StreamEvents::unsubscribe>;
}

}  // namespace

Skeleton makeDaeBrowserApi(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer table, gpointer) {
        auto& handlers = *static_cast<IDAEBrowserAPIIface*>(table);
        fillApplications(handlers);
        fillReceiver(handlers);
        fillBroadcast(handlers);
    };
    return makeSkeleton({TYPE_IDAEBROWSER_API_SKELETON, TYPE_IDAEBROWSER_API, fill}, &world, &dispatcher);
}

}  // namespace Receiver
