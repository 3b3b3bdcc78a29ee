// org.vantrel.hbbtv.IAVEventHandler: exported; its methods answer "not implemented" so far.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/aveventhandler-generated.h"

namespace Receiver {

Skeleton makeAvEventHandler(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer, gpointer) {};
    return makeSkeleton({"ReceiverAvEventHandler", TYPE_IAVEVENT_HANDLER_SKELETON, TYPE_IAVEVENT_HANDLER, fill}, &world, &dispatcher);
}

}  // namespace Receiver
