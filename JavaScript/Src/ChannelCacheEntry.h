// Holds one entry of the receiver's channel cache: retained with every copy, released with every end. When
// the receiver has gone meanwhile, there is nothing to release: the id may be another channel's now.
#pragma once

#include <cstdint>
#include <limits>

namespace OipfJavaScript {

class ChannelCacheEntry {
 public:
    ChannelCacheEntry() = default;
    // 0 names no entry, and touches nothing.
    explicit ChannelCacheEntry(uint32_t id);
    ChannelCacheEntry(const ChannelCacheEntry& other);
    ChannelCacheEntry& operator=(const ChannelCacheEntry&) = delete;
    ~ChannelCacheEntry();

    [[nodiscard]] uint32_t Id() const { return m_id; }

 private:
    [[nodiscard]] bool IsHeld() const;

    uint32_t m_id = 0;
    uint64_t m_life = std::numeric_limits<uint64_t>::max();
};

}  // namespace OipfJavaScript
