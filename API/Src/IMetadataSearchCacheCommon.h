// The receiver's searches: what is looked for, where, and in which order. A search is retained while an
// object refers to it.
#pragma once

#include <cstdint>
#include <utility>

#include "API/Src/MetadataQuery.h"

// Outputs are untouched when the receiver could not be asked; a false result says that it refused.
class IMetadataSearchCacheCommon {
 public:
    virtual ~IMetadataSearchCacheCommon() = default;

    virtual bool Retain(uint32_t id) = 0;
    // Nobody waits for it: objects that are collected release.
    virtual void Release(uint32_t id) = 0;

    // Changes when the receiver goes. An id means nothing, or something else, in another life of it.
    [[nodiscard]] virtual uint64_t Life() const = 0;
    // A new search over a target, one of the TARGET_ constants of MetadataSearch. 0: refused.
    [[nodiscard]] virtual uint32_t Add(int target) = 0;

    virtual bool SetQuery(uint32_t id, uint32_t queryId) = 0;
    virtual bool GetQuery(uint32_t id, uint32_t& queryId) = 0;
    // The id of the search's results.
    virtual bool GetResults(uint32_t id, uint32_t& resultsId) = 0;
    virtual bool GetTarget(uint32_t id, int& target) = 0;

    virtual bool SetOrderBy(uint32_t id, const TOrderBy& orderBy) = 0;
    // Appends to the list.
    virtual bool GetOrderBy(uint32_t id, TOrderBy& orderBy) const = 0;
    virtual bool ExpandOrderBy(uint32_t id, std::pair<EQueryType, bool> entry) = 0;

    // Adds the constraints of a query that was made from constraints.
    virtual bool AddConstraints(uint32_t id, uint32_t constraintId, bool& result) = 0;
    virtual bool RemoveConstraints(uint32_t id, EQueryType type) = 0;
    virtual bool ClearConstraints(uint32_t id) = 0;

    // The search gives no more than this part of what it finds.
    virtual bool SetQueryWindow(uint32_t id, int start, int count, bool& result) = 0;
};
