// org.vantrel.hbbtv.IDAEBrowserAPI: applications, keys, preferences, programmes and what else is no player.
#include <algorithm>

#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "Host/Receiver/Variants.h"
#include "Host/Receiver/World/Capabilities.h"
#include "gen/dbus/daebrowserapi-generated.h"

namespace Receiver {

namespace {

GVariant* channelIds(World& world) {
    std::vector<std::uint32_t> ids;
    for (const auto& channel : world.scenario().broadcast.channels)
        ids.push_back(channel.id);
    return variantOf(ids);
}

GVariant* programDescriptors(World& world, std::uint32_t channelId, std::uint16_t eventId,
                             const DescriptorFilter& filter) {
    const auto* channel = world.scenario().channel(channelId);
    const auto& locale = world.scenario().locale;
    // The first of the preferred languages; codes have three letters.
    const auto language = locale.uiLanguages.substr(0, 3);
    return variantOf(channel == nullptr ? std::vector<std::vector<std::uint8_t>>()
                                        : descriptors(*channel, eventId, filter, language, locale.country));
}

std::tuple<std::uint32_t, bool> currentChannel(World& world) {
    const auto id = world.scenario().broadcast.currentChannel;
    return {id, id != 0};
}

std::tuple<std::uint32_t, std::int32_t, bool> time(World& world) {
    const auto& clock = world.scenario().clock;
    return {static_cast<std::uint32_t>(world.utc()), clock.utcOffsetSeconds, clock.valid};
}

std::tuple<GVariant*, std::uint16_t, bool> channelsAndEvent(World& world, const std::string& url) {
    std::uint16_t eventId = 0;
    const auto ids = world.channelsAt(url, eventId);
    return {variantOf(ids), eventId, !ids.empty()};
}

void fillApplications(IDAEBrowserAPIIface& table) {
    table.handle_create_application = answer<idaebrowser_api_complete_create_application,
                                             [](Caller& caller, const char* url, std::int32_t viewId) {
                                                 return caller.createApplication(url, viewId);
                                             }>;
    table.handle_destroy_application =
        answer<idaebrowser_api_complete_destroy_application,
               [](World& world, std::int32_t viewId) { world.applications().destroy(viewId); }>;
    table.handle_show = answer<idaebrowser_api_complete_show, [](World& world, std::int32_t viewId) {
        world.applications().setVisible(viewId, true);
    }>;
    table.handle_hide = answer<idaebrowser_api_complete_hide, [](World& world, std::int32_t viewId) {
        world.applications().setVisible(viewId, false);
    }>;
    table.handle_is_broadcast_related =
        answer<idaebrowser_api_complete_is_broadcast_related,
               [](World& world) { return world.scenario().broadcast.related; }>;
    table.handle_is_trusted = answer<idaebrowser_api_complete_is_trusted,
                                     [](World& world) { return world.applications().isTrusted(); }>;
    table.handle_is_urlin_app_boundary =
        answer<idaebrowser_api_complete_is_urlin_app_boundary,
               [](World& world, const char* url) { return world.applications().isInBoundary(url); }>;
    table.handle_set_key_mask =
        answer<idaebrowser_api_complete_set_key_mask,
               [](World& world, std::int32_t mask) { world.setKeyMask(static_cast<std::uint32_t>(mask)); }>;
    table.handle_get_key_mask = answer<idaebrowser_api_complete_get_key_mask,
                                       [](World& world) { return world.scenario().keys.mask; }>;
    table.handle_get_max_key_mask = answer<idaebrowser_api_complete_get_max_key_mask,
                                           [](World& world) { return world.scenario().keys.maximum; }>;
}

void fillReceiver(IDAEBrowserAPIIface& table) {
    table.handle_set_profile_support = answer<idaebrowser_api_complete_set_profile_support,
                                              [](World& world, std::uint16_t profile, std::uint8_t major,
                                                 std::uint8_t minor, std::uint8_t micro) {
                                                  world.addProfile({profile, major, minor, micro});
                                              }>;
    table.handle_is_profile_supported = answer<idaebrowser_api_complete_is_profile_supported,
                                               [](World& world, std::uint16_t profile, std::uint8_t major,
                                                  std::uint8_t minor, std::uint8_t micro) {
                                                   return world.hasProfile({profile, major, minor, micro});
                                               }>;
    table.handle_get_xml_capabilities =
        answer<idaebrowser_api_complete_get_xml_capabilities,
               [](World& world) { return capabilitiesXml(world.scenario()); }>;
    table.handle_has_capability =
        answer<idaebrowser_api_complete_has_capability,
               [](World& world, const char* name) { return hasCapability(world.scenario(), name); }>;
    table.handle_get_preferred_audio_lang =
        answer<idaebrowser_api_complete_get_preferred_audio_lang,
               [](World& world) { return world.scenario().locale.audioLanguages; }>;
    table.handle_get_preferred_subtitle_lang =
        answer<idaebrowser_api_complete_get_preferred_subtitle_lang,
               [](World& world) { return world.scenario().locale.subtitleLanguages; }>;
    table.handle_get_preferred_uilang =
        answer<idaebrowser_api_complete_get_preferred_uilang,
               [](World& world) { return world.scenario().locale.uiLanguages; }>;
    table.handle_get_country_id = answer<idaebrowser_api_complete_get_country_id,
                                         [](World& world) { return world.scenario().locale.country; }>;
    table.handle_get_time =
        answer<idaebrowser_api_complete_get_time, [](World& world) { return time(world); }>;
    table.handle_get_parental_lock_status =
        answer<idaebrowser_api_complete_get_parental_lock_status,
               [](World& world) { return world.scenario().parental.lockStatus; }>;
    table.handle_get_dvbsi_parental_lock_max_val =
        answer<idaebrowser_api_complete_get_dvbsi_parental_lock_max_val,
               [](World& world) { return world.scenario().parental.maximum; }>;
    table.handle_get_dvbsi_parental_lock_min_val =
        answer<idaebrowser_api_complete_get_dvbsi_parental_lock_min_val,
               [](World& world) { return world.scenario().parental.minimum; }>;
    table.handle_get_ciplus_drm_type = answer<idaebrowser_api_complete_get_ciplus_drm_type,
                                              [](World& world) { return world.scenario().drm.ciPlusTypes; }>;
    table.handle_is_sassession_open = answer<idaebrowser_api_complete_is_sassession_open, [](World& world) {
        return world.scenario().drm.sasSessionOpen;
    }>;
    table.handle_send_drmmessage = answer<idaebrowser_api_complete_send_drmmessage,
                                          [](Caller& caller, const char*, const char*, const char* system) {
                                              return caller.sendDrmMessage(system);
                                          }>;
}

void fillBroadcast(IDAEBrowserAPIIface& table) {
    table.handle_current_channel =
        answer<idaebrowser_api_complete_current_channel, [](World& world) { return currentChannel(world); }>;
    table.handle_get_channel_list =
        answer<idaebrowser_api_complete_get_channel_list, [](World& world) { return channelIds(world); }>;
    table.handle_get_prog_collection =
        answer<idaebrowser_api_complete_get_prog_collection,
               [](World& world, std::uint32_t channelId) { return variantOf(world.programmes(channelId)); }>;
    table.handle_get_program_descriptors =
        answer<idaebrowser_api_complete_get_program_descriptors,
               [](World& world, std::uint32_t channelId, std::uint16_t eventId, std::int32_t tag,
                  std::int32_t extendedTag, std::int32_t specifier) {
                   return programDescriptors(world, channelId, eventId, {tag, extendedTag, specifier});
               }>;
    table.handle_get_channels_and_event_from_url =
        answer<idaebrowser_api_complete_get_channels_and_event_from_url,
               [](World& world, const char* url) { return channelsAndEvent(world, url); }>;
    table.handle_stream_event_subscribe = answer<idaebrowser_api_complete_stream_event_subscribe,
                                                 [](Caller& caller, const char* url, const char* name) {
                                                     return caller.streamEvents().subscribe(url, name);
                                                 }>;
    table.handle_stream_event_unsubscribe =
        answer<idaebrowser_api_complete_stream_event_unsubscribe,
               [](Caller& caller, std::uint32_t jobId) { return caller.streamEvents().unsubscribe(jobId); }>;
}

}  // namespace

Skeleton makeDaeBrowserApi(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer table, gpointer) {
        auto& handlers = *static_cast<IDAEBrowserAPIIface*>(table);
        fillApplications(handlers);
        fillReceiver(handlers);
        fillBroadcast(handlers);
    };
    return makeSkeleton({"ReceiverDaeBrowserApi", TYPE_IDAEBROWSER_API_SKELETON, TYPE_IDAEBROWSER_API, fill},
                        &world, &dispatcher);
}

}  // namespace Receiver
