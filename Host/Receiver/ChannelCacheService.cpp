// org.vantrel.hbbtv.IJSChannelCache: the attributes of channels, pinned while somebody refers to them.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/channelcache-generated.h"

namespace Receiver {

namespace {

auto channelInfo(const Scenario& scenario, std::uint32_t id) {
    const auto* found = scenario.channel(id);
    const auto channel = found == nullptr ? Channel() : *found;
    return std::make_tuple(channel.name, channel.longName, channel.description, channel.idType,
                           channel.networkId, channel.onid, channel.tsid, channel.sid, channel.radio,
                           channel.ccid, channel.authorised, channel.hidden, channel.locked,
                           channel.manualBlock, channel.maxBitRate, channel.ipBroadcastId,
                           channel.majorChannel, found != nullptr);
}

void fill(gpointer raw, gpointer) {
    auto& table = *static_cast<IJSChannelCacheIface*>(raw);
    table.handle_retain = answer<ijschannel_cache_complete_retain, &Caller::retainChannel>;
    table.handle_release = answer<ijschannel_cache_complete_release, &Caller::releaseChannel>;
    table.handle_get_channel_info = answer<ijschannel_cache_complete_get_channel_info, &channelInfo>;
}

}  // namespace

Skeleton makeChannelCache(World& world, CallDispatcher& dispatcher) {
    return makeSkeleton({TYPE_IJSCHANNEL_CACHE_SKELETON, TYPE_IJSCHANNEL_CACHE, fill}, &world, &dispatcher);
}

}  // namespace Receiver
