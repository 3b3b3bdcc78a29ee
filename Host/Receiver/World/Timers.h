// Time as the world sees it; tests put a clock of their own behind it.
#pragma once

#include <cstdint>
#include <functional>

namespace Receiver {

class Timers {
 public:
    using Id = unsigned;

    virtual ~Timers() = default;

    // Runs the action once, later (never from inside this call), and keeps its closure until it has run,
    // because an action may destroy its own timer. The id is never 0.
    [[nodiscard]] virtual Id after(std::uint32_t milliseconds, std::function<void()> action) = 0;
    virtual void cancel(Id id) = 0;
    // Runs the action once, soon, on the world's own thread. The one function for other threads.
    virtual void post(std::function<void()> action) = 0;
    // Milliseconds of a clock that only goes forward.
    [[nodiscard]] virtual std::int64_t now() const = 0;
    // Seconds since 1970.
    [[nodiscard]] virtual std::int64_t utc() const = 0;
};

// One pending action; starting again replaces it, destruction drops it.
class Timer {
 public:
    explicit Timer(Timers& timers) : m_timers(timers) {}
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;
    ~Timer() { stop(); }

    void start(std::uint32_t milliseconds, std::function<void()> action) {
        stop();
        m_id = m_timers.after(milliseconds, [this, run = std::move(action)] {
            m_id = 0;
            run();
        });
    }
    void stop() {
        if (m_id != 0)
            m_timers.cancel(m_id);
        m_id = 0;
    }
    [[nodiscard]] bool isRunning() const { return m_id != 0; }

 private:
    Timers& m_timers;
    Timers::Id m_id = 0;
};

}  // namespace Receiver
