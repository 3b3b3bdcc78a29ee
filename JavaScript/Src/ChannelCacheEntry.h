// Holds one entry of the receiver's channel cache: retained with every copy, released with every end.
#pragma once

#include <cstdint>

namespace OipfJavaScript {

class ChannelCacheEntry {
   public:
    ChannelCacheEntry() = default;
    // 0 names no entry, and touches nothing.
    explicit ChannelCacheEntry(uint32_t id);
    ChannelCacheEntry(const ChannelCacheEntry& other) : ChannelCacheEntry(other.m_id) {}
    ChannelCacheEntry& operator=(const ChannelCacheEntry&) = delete;
    ~ChannelCacheEntry();

    [[nodiscard]] uint32_t Id() const { return m_id; }

   private:
    uint32_t m_id = 0;
};

}  // namespace OipfJavaScript
