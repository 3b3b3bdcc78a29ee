// The receiver's queries: conditions on programmes. A query never changes, and is retained while an object
// refers to it.
#pragma once

#include <cstdint>
#include <string>

#include "API/Src/MetadataQuery.h"

class IQueryCacheCommon {
 public:
    virtual ~IQueryCacheCommon() = default;

    virtual bool Retain(uint32_t id) = 0;
    // Nobody waits for it: objects that are collected release.
    virtual void Release(uint32_t id) = 0;

    // Changes when the receiver goes. An id means nothing, or something else, in another life of it.
    [[nodiscard]] virtual uint64_t Life() const = 0;

    // New queries; 0 when the receiver refused.
    [[nodiscard]] virtual uint32_t Add(EQueryType type) = 0;
    [[nodiscard]] virtual uint32_t Add(EQueryType type, EQueryMode mode, uint32_t value) = 0;
    [[nodiscard]] virtual uint32_t Add(EQueryType type, EQueryMode mode, const std::string& value) = 0;
    [[nodiscard]] virtual uint32_t Add(const TConstraints& constraints) = 0;

    // `result` is the new query. It is untouched when the receiver could not be asked.
    virtual bool And(uint32_t a, uint32_t b, uint32_t& result) = 0;
    virtual bool Or(uint32_t a, uint32_t b, uint32_t& result) = 0;
    virtual bool Not(uint32_t a, uint32_t& result) = 0;
};
