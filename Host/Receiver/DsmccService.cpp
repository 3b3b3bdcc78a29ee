// org.vantrel.hbbtv.DSMCC: exported; its methods answer "not implemented" so far.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/dsmcc-generated.h"

namespace Receiver {

Skeleton makeDsmcc(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer, gpointer) {};
    return makeSkeleton({"ReceiverDsmcc", TYPE_DSMCC_SKELETON, TYPE_DSMCC, fill}, &world, &dispatcher);
}

}  // namespace Receiver
