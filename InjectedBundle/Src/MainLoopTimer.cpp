#include "InjectedBundle/Src/MainLoopTimer.h"

#include <utility>

#include <glib.h>

namespace OipfJavaScript {

void MainLoopTimer::Start(unsigned milliseconds, std::function<void()> action) {
    Stop();
    m_action = std::move(action);
    const auto fire = [](gpointer timer) -> gboolean {
        static_cast<MainLoopTimer*>(timer)->Fire();
        return G_SOURCE_REMOVE;
    };
    m_source = g_timeout_add(milliseconds, fire, this);
}

void MainLoopTimer::Stop() {
    if (const unsigned source = std::exchange(m_source, 0))
        g_source_remove(source);
    m_action = nullptr;
}

void MainLoopTimer::Fire() {
    m_source = 0;
    const std::function<void()> action = std::exchange(m_action, nullptr);
    action();
}

}  // namespace OipfJavaScript
