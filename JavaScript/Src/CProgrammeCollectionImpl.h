// The programmes of a channel, as the receiver listed them.
#pragma once

#include <cstdint>
#include <vector>

#include "InjectedBundle/gen/js/CProgrammeCollectionBase.h"
#include "InjectedBundle/gen/js/jiProgramme.h"
#include "JavaScript/Src/BindingCollection.h"

class IProgrammeCollection;

namespace OipfJavaScript {

class CProgrammeCollectionImpl : public BindingCollection<CProgrammeCollectionBase, jiProgramme> {
 public:
    using BindingCollection::BindingCollection;

    // What the receiver sent for the channel with this identifier in the channel cache.
    CProgrammeCollectionImpl(const IProgrammeCollection& received, uint32_t cacheId)
        : BindingCollection(Read(received, cacheId)) {}

 private:
    [[nodiscard]] static std::vector<jiProgramme> Read(const IProgrammeCollection& received,
                                                       uint32_t cacheId);
};

}  // namespace OipfJavaScript
