// The results of the receiver's searches. They are retained while an object refers to them.
#pragma once

#include <cstdint>

// Outputs are untouched when the receiver could not be asked; a false result says that it refused.
class ISearchResultsCacheCommon {
 public:
    virtual ~ISearchResultsCacheCommon() = default;

    virtual bool Retain(uint32_t id) = 0;
    // Nobody waits for it: objects that are collected release.
    virtual void Release(uint32_t id) = 0;

    // Changes when the receiver goes. An id means nothing, or something else, in another life of it.
    [[nodiscard]] virtual uint64_t Life() const = 0;
    // New results for a search. 0: refused.
    [[nodiscard]] virtual uint32_t Add(uint32_t mdsId) = 0;

    // The search that they belong to.
    virtual bool Parent(uint32_t id, uint32_t& mdsId) const = 0;
    // Whether the search has ended, the first result of the window, how many lie in it, and how many there
    // are.
    virtual bool QueryResults(uint32_t id, bool& complete, uint32_t& offset, uint32_t& count,
                              uint32_t& size) const = 0;
    // Counted from the window's first. `result` is false at or past its end.
    virtual bool ItemAtIndex(uint32_t id, uint32_t index, bool& result, uint32_t& programmeId) const = 0;
    virtual bool SetQueryWindow(uint32_t id, int start, int count, bool& result) = 0;
};
