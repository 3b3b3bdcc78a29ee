// How long a call waits for its answer. A middleware that is silent costs its full time limit once: after
// that every call waits a second at most, until one is answered or the service that was silent has another
// owner.
#pragma once

#include <atomic>
#include <mutex>

class Patience {
 public:
    // The process's: all services are one middleware's. Never destroyed.
    [[nodiscard]] static Patience& Instance();

    // In milliseconds, for the next call; -1 is the bus's own limit.
    [[nodiscard]] int Now() const { return m_silent.load() != nullptr ? kSpent : m_full.load(); }
    [[nodiscard]] int Full() const { return m_full; }
    // The full limit, where a test cannot wait for the bus's.
    void SetFull(int milliseconds) { m_full = milliseconds; }

    // A service is named by the address of its name, which stands as long as the process does.
    void TimedOut(const char* service);
    void Answered() {
        if (m_silent.load() != nullptr)
            End(nullptr);
    }
    void OwnerChanged(const char* service) {
        if (m_silent.load() != nullptr)
            End(service);
    }

 private:
    static constexpr int kSpent = 1000;

    void End(const char* service);

    std::atomic<int> m_full = -1;
    std::atomic<const char*> m_silent = nullptr;
    std::mutex m_mutex;
};
