// org.vantrel.hbbtv.DSMCC: files of the object carousel.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/dsmcc-generated.h"

namespace Receiver {

Skeleton makeDsmcc(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer table, gpointer) {
        static_cast<DSMCCIface*>(table)->handle_file_request =
            answer<dsmcc_complete_file_request, &Carousel::request>;
    };
    return makeSkeleton({TYPE_DSMCC_SKELETON, TYPE_DSMCC, fill}, &world, &dispatcher);
}

}  // namespace Receiver
