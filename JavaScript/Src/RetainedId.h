// Holds an id of the receiver's search caches: retained with every copy, released with every end. It ends
// with the life of the receiver that gave it, too: then it is forgotten.
#pragma once

#include <cstdint>
#include <utility>

#include "CSP/Inc/PCLog.h"

namespace OipfJavaScript {

// Usage: RetainedId<IQueryCacheWK>
template <class Holder>
class RetainedId {
 public:
    RetainedId() = default;
    // 0 names nothing, and touches nothing; neither does, from now on, an id that the receiver does not know.
    explicit RetainedId(uint32_t id) : m_id(id) {
        if (m_id == 0)
            return;
        if (!Holder::GetInstance()->Retain(m_id)) {
            HBBTV_LOG_ERROR("the receiver does not know the id %u", m_id);
            m_id = 0;
        }
        m_life = Holder::GetInstance()->Life();
    }
    RetainedId(const RetainedId& other) : RetainedId(other.Get()) {}
    RetainedId(RetainedId&& other) noexcept : m_id(std::exchange(other.m_id, 0)), m_life(other.m_life) {}
    RetainedId& operator=(RetainedId&& other) noexcept {
        std::swap(m_id, other.m_id);
        std::swap(m_life, other.m_life);
        return *this;
    }
    ~RetainedId() { Release(); }

    void Release() {
        if (const uint32_t id = Get())
            Holder::GetInstance()->Release(id);
        m_id = 0;
    }

    [[nodiscard]] uint32_t Get() const {
        return m_id != 0 && m_life == Holder::GetInstance()->Life() ? m_id : 0;
    }
    explicit operator bool() const { return Get() != 0; }

 private:
    uint32_t m_id = 0;
    uint64_t m_life = 0;
};

}  // namespace OipfJavaScript
