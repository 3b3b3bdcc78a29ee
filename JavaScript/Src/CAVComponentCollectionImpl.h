// The elementary streams of a player, as they were when a page asked for them.
#pragma once

#include <cstdint>
#include <vector>

#include "InjectedBundle/gen/js/CAVComponentCollectionBase.h"
#include "InjectedBundle/gen/js/jiAVComponent.h"
#include "JavaScript/Src/BindingCollection.h"

namespace OipfJavaScript {

class CAVComponentCollectionImpl : public BindingCollection<CAVComponentCollectionBase, jiAVComponent> {
 public:
    // Asks for all types, video first, then audio, then subtitles.
    static constexpr int32_t kAllTypes = 3;

    using BindingCollection::BindingCollection;

    // `broadcast` asks the live-television player, otherwise the media player is asked. A type that is none
    // gives an empty list.
    [[nodiscard]] static std::vector<jiAVComponent> GetComponents(uint32_t playerId, int32_t componentType,
                                                                  bool activeOnly, bool broadcast);

    // Answers a page's call of getComponents or getCurrentActiveComponents on either kind of player: a
    // collection, or null for arguments that make no sense.
    [[nodiscard]] static JSValueRef commonGetComponents(const CallArguments& call, uint32_t playerId,
                                                        bool activeOnly, bool broadcast);
};

}  // namespace OipfJavaScript
