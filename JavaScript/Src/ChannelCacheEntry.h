// Holds one entry of the receiver's channel cache: retained with every copy, released with every end. When
// the receiver has gone meanwhile, there is nothing to release: the id may be another channel's now.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>

namespace OipfJavaScript {

class ChannelCacheEntry {
 public:
    ChannelCacheEntry() = default;
    // 0 names no entry, and touches nothing. What is done meanwhile is under way with the call that retains.
    ChannelCacheEntry(uint32_t id, const std::function<void()>& meanwhile);
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
