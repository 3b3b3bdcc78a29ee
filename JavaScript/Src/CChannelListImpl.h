// The channels of the receiver, in its order, as they were when the list was made.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "InjectedBundle/gen/js/CChannelListBase.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "JavaScript/Src/BindingCollection.h"

namespace OipfJavaScript {

class CChannelListImpl : public BindingCollection<CChannelListBase, jiChannel> {
 public:
    explicit CChannelListImpl(std::vector<jiChannel> channels);

    // The channels' identifiers in the channel cache; 0 for one that the cache does not hold.
    [[nodiscard]] std::vector<uint32_t> CacheIds() const;

    // By ccid or IP broadcast id; undefined when there is none.
    [[nodiscard]] std::unique_ptr<jiChannel> GetChannel(const std::string& channelID);
    [[nodiscard]] std::unique_ptr<jiChannel> GetChannelByTriplet(uint32_t onid, uint32_t tsid, uint32_t sid);
};

}  // namespace OipfJavaScript
