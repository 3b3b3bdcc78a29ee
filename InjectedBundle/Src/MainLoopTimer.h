// One call from the main loop after a while, for objects that have to wait without holding the page up.
#pragma once

#include <functional>

namespace OipfJavaScript {

class MainLoopTimer {
 public:
    MainLoopTimer() = default;
    MainLoopTimer(const MainLoopTimer&) = delete;
    MainLoopTimer& operator=(const MainLoopTimer&) = delete;
    ~MainLoopTimer() { Stop(); }

    // Replaces what was waited for. The action is never called from inside, not even after 0 milliseconds,
    // and may start, stop and destroy the timer.
    void Start(unsigned milliseconds, std::function<void()> action);
    void Stop();
    [[nodiscard]] bool IsRunning() const { return m_source != 0; }

 private:
    void Fire();

    unsigned m_source = 0;
    std::function<void()> m_action;
};

}  // namespace OipfJavaScript
