#include "Host/Receiver/GLibTimers.h"

#include <memory>
#include <utility>

#include <glib.h>

namespace Receiver {

namespace {

struct Source {
    std::map<Timers::Id, std::function<void()>>* actions;
    Timers::Id id;
};

}  // namespace

GLibTimers::~GLibTimers() {
    for (const auto& entry : m_actions)
        g_source_remove(entry.first);
}

Timers::Id GLibTimers::after(std::uint32_t milliseconds, std::function<void()> action) {
    auto source = std::make_unique<Source>(Source{&m_actions, 0});
    auto* data = source.get();
    const auto fire = [](gpointer user) -> gboolean {
        auto& fired = *static_cast<Source*>(user);
        const auto node = fired.actions->extract(fired.id);
        node.mapped()();
        return G_SOURCE_REMOVE;
    };
    data->id = g_timeout_add_full(
        G_PRIORITY_DEFAULT, milliseconds, fire, source.release(),
        [](gpointer user) { const std::unique_ptr<Source> owned(static_cast<Source*>(user)); });
    m_actions.emplace(data->id, std::move(action));
    return data->id;
}

void GLibTimers::cancel(Id id) {
    if (m_actions.erase(id) > 0)
        g_source_remove(id);
}

void GLibTimers::post(std::function<void()> action) {
    using Action = std::function<void()>;
    const auto run = [](gpointer user) -> gboolean {
        (*static_cast<Action*>(user))();
        return G_SOURCE_REMOVE;
    };
    g_idle_add_full(G_PRIORITY_DEFAULT, run, std::make_unique<Action>(std::move(action)).release(),
                    [](gpointer user) { const std::unique_ptr<Action> owned(static_cast<Action*>(user)); });
}

std::int64_t GLibTimers::now() const {
    return g_get_monotonic_time() / 1000;
}

std::int64_t GLibTimers::utc() const {
    return g_get_real_time() / G_USEC_PER_SEC;
}

}  // namespace Receiver
