// org.vantrel.hbbtv.IMetaDataSearch: exported; its methods answer "not implemented" so far.
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SkeletonGlue.h"
#include "gen/dbus/metadatasearch-generated.h"

namespace Receiver {

Skeleton makeMetadataSearch(World& world, CallDispatcher& dispatcher) {
    const auto fill = [](gpointer, gpointer) {};
    return makeSkeleton({"ReceiverMetadataSearch", TYPE_IMETA_DATA_SEARCH_SKELETON, TYPE_IMETA_DATA_SEARCH, fill}, &world, &dispatcher);
}

}  // namespace Receiver
