// A counting semaphore of the operating system.
#pragma once

#include <semaphore.h>

#include <atomic>

namespace HbbTVPlatform {

class PCSemaphore {
 public:
    PCSemaphore() = default;
    ~PCSemaphore();
    PCSemaphore(const PCSemaphore&) = delete;
    PCSemaphore& operator=(const PCSemaphore&) = delete;

    // False, with the reason in PCError::Num(), when the system has none left.
    [[nodiscard]] bool Create(unsigned initialCount);
    // Nobody may be waiting any more. Does nothing when there is no semaphore.
    void Destroy();
    [[nodiscard]] bool FlagCreate() const { return m_created; }

    void Wait();
    void Post();

 private:
    sem_t m_semaphore{};
    std::atomic<bool> m_created{false};
};

}  // namespace HbbTVPlatform
