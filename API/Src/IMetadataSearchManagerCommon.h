// Starts and ends the searches of the receiver, which are named by an id of the search cache.
//
// No signal tells that a search has ended: ISearchResultsCacheCommon::QueryResults does.
#pragma once

#include <cstdint>

class IMetadataSearchManagerCommon {
 public:
    virtual ~IMetadataSearchManagerCommon() = default;

    // False when the receiver could not be asked.
    [[nodiscard]] virtual bool StartSearch(uint32_t id) = 0;
    // Stops; what was found before stays.
    virtual void AbortSearch(uint32_t id) = 0;
    // Stops, and drops what was found.
    virtual void CancelSearch(uint32_t id) = 0;
    // The same, and nobody waits for it: for an object that is collected, or whose page is left.
    virtual void SendCancelSearch(uint32_t id) = 0;
};
