// What every bus test stands on: a bus and a home of the test program's own, and waiting for a fact.
#pragma once

#include <chrono>
#include <functional>

// Limits are of time in which the machine ran: a busy one may stand still for seconds, and nobody is late
// then.

// Runs the main loop until the fact holds. False when it did not within the limit.
[[nodiscard]] bool WaitFor(const std::function<bool()>& fact,
                           std::chrono::milliseconds limit = std::chrono::seconds(10));

// Expects of an action that it takes so long, and no longer.
void ExpectTakes(std::chrono::milliseconds atLeast, std::chrono::milliseconds atMost,
                 const std::function<void()>& action);

// Criticals and warnings of GLib end the program; the bus goes with it. Called by main() before the tests.
void GiveTheProgramItsOwnBus();
