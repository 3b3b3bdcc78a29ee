// org.vantrel.hbbtv.DSMCC: files of the object carousel.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/dsmcc-generated.h"

namespace Receiver {

namespace {

void fill(gpointer table, gpointer) {
    static_cast<DSMCCIface*>(table)->handle_file_request =
        answer<dsmcc_complete_file_request, [](Caller& caller, std::uint32_t handle, const char* url) {
            return caller.carousel().request(handle, url);
        }>;
}

}  // namespace

Skeleton makeDsmcc(World& world, CallDispatcher& dispatcher) {
    return makeSkeleton({"ReceiverDsmcc", TYPE_DSMCC_SKELETON, TYPE_DSMCC, fill}, &world, &dispatcher);
}

}  // namespace Receiver
