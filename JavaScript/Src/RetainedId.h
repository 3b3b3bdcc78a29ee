// Holds an id of the receiver's search caches: retained with every copy, released with every end.
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
        if (m_id != 0 && !Holder::GetInstance()->Retain(m_id)) {
            HBBTV_LOG_ERROR("the receiver does not know the id %u", m_id);
            m_id = 0;
        }
    }
    RetainedId(const RetainedId& other) : RetainedId(other.m_id) {}
    RetainedId(RetainedId&& other) noexcept : m_id(std::exchange(other.m_id, 0)) {}
    RetainedId& operator=(RetainedId&& other) noexcept {
        std::swap(m_id, other.m_id);
        return *this;
    }
    ~RetainedId() { Release(); }

    void Release() {
        if (const uint32_t id = std::exchange(m_id, 0))
            Holder::GetInstance()->Release(id);
    }

    [[nodiscard]] uint32_t Get() const { return m_id; }
    explicit operator bool() const { return m_id != 0; }

 private:
    uint32_t m_id = 0;
};

}  // namespace OipfJavaScript
