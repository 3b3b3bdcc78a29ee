#include "JavaScript/Src/CProgrammeCollectionImpl.h"

#include <memory>
#include <string>

#include "API/Src/IProgrammeCollection.h"
#include "IPC/DBUS/Src/ChannelCacheWK_DBus.h"
#include "JavaScript/Src/CChannelImpl.h"
#include "JavaScript/Src/CProgrammeImpl.h"

namespace OipfJavaScript {

std::vector<jiProgramme> CProgrammeCollectionImpl::Read(const IProgrammeCollection& received,
                                                        uint32_t cacheId) {
    std::string ccid = CChannelImpl::kNoCcid;
    IJSChannelCacheWK::GetInstance()->GetChannelInfo(cacheId, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                     nullptr, nullptr, nullptr, nullptr, &ccid, nullptr,
                                                     nullptr, nullptr, nullptr, nullptr, nullptr, nullptr);
    std::vector<jiProgramme> programmes;
    const int count = received.NumberEntries();
    programmes.reserve(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        TCProgramInfo info;
        if (received.GetInfo(i, info.name, info.description, info.startTime, info.duration,
                             info.parentalRating, info.eventId, info.programmeId))
            programmes.emplace_back(std::make_unique<CProgrammeImpl>(info, cacheId, ccid));
    }
    return programmes;
}

}  // namespace OipfJavaScript
