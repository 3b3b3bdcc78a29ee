// A recursive lock, usable with std::lock_guard.
#pragma once

#include <pthread.h>

#include <atomic>

#include "CSP/Inc/PCSemaphore.h"

namespace HbbTVPlatform {

class PCMutex {
 public:
    PCMutex();
    PCMutex(const PCMutex&) = delete;
    PCMutex& operator=(const PCMutex&) = delete;

    // The thread that holds the lock may take it again, and gives it back as often.
    void lock();
    void unlock();

    // False when the system had no semaphore for it, or it has been destroyed.
    [[nodiscard]] bool FlagCreate() const { return m_semaphore.FlagCreate(); }

 protected:
    void Destroy() { m_semaphore.Destroy(); }

 private:
    PCSemaphore m_semaphore;
    // Written by the holder alone. Other threads read it only to see that it is not themselves.
    std::atomic<pthread_t> m_owner{0};
    unsigned long m_count = 0;
};

}  // namespace HbbTVPlatform
