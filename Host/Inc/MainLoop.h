// Waiting within the main loop, while everything else goes on.
#pragma once

#include "Host/Inc/GHandles.h"

namespace Host {

// Runs the loop until the fact holds; false when it still does not after this time.
template <typename Fact>
bool runUntil(const Fact& fact, unsigned limitMs) {
    bool isOver = false;
    const auto onLimit = [](gpointer over) -> gboolean {
        *static_cast<bool*>(over) = true;
        return G_SOURCE_CONTINUE;
    };
    const GSourceHandle limit(g_timeout_add(limitMs, onLimit, &isOver));
    while (!isOver && !fact())
        g_main_context_iteration(nullptr, TRUE);
    return fact();
}

}  // namespace Host
