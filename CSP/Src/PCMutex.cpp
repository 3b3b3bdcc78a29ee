#include "CSP/Inc/PCMutex.h"

#include "CSP/Inc/PCDebug.h"

namespace HbbTVPlatform {

PCMutex::PCMutex() {
    // Without a semaphore the lock is unusable, which its first use asserts.
    static_cast<void>(m_semaphore.Create(1));
}

void PCMutex::lock() {
    const pthread_t self = pthread_self();
    if (m_owner.load(std::memory_order_relaxed) != self) {
        m_semaphore.Wait();
        m_owner.store(self, std::memory_order_relaxed);
    }
    ++m_count;
}

void PCMutex::unlock() {
    PC_ASSERT(m_owner == pthread_self());
    if (--m_count > 0)
        return;
    m_owner.store(0, std::memory_order_relaxed);
    m_semaphore.Post();
}

}  // namespace HbbTVPlatform
