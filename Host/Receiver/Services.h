// The six interfaces of the product, one file each.
#pragma once

#include "Host/Inc/GHandles.h"
#include "Host/Receiver/CallDispatcher.h"
#include "Host/Receiver/World/World.h"

namespace Receiver {

using Skeleton = Host::GObjectHandle<GDBusInterfaceSkeleton>;

[[nodiscard]] Skeleton makeDaeBrowserApi(World& world, CallDispatcher& dispatcher);
[[nodiscard]] Skeleton makeBroadcastPlayer(World& world, CallDispatcher& dispatcher);
[[nodiscard]] Skeleton makeAvEventHandler(World& world, CallDispatcher& dispatcher);
[[nodiscard]] Skeleton makeChannelCache(World& world, CallDispatcher& dispatcher);
[[nodiscard]] Skeleton makeMetadataSearch(World& world, CallDispatcher& dispatcher);
[[nodiscard]] Skeleton makeDsmcc(World& world, CallDispatcher& dispatcher);

}  // namespace Receiver
