// A bus of its own for the program, with nobody on it: calls to the receiver fail at once, and nothing
// reaches the developer's own session.

#include <gtest/gtest.h>

#include "Tests/Bus/BusFixture.h"

// What the engine holds from its own heap is not seen by the leak check, which knows the C heap only.
extern "C" __attribute__((visibility("default"))) const char* __lsan_default_suppressions();  // NOLINT
const char* __lsan_default_suppressions() {
    return "leak:libjavascriptcoregtk\n";
}  // NOLINT

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    GiveTheProgramItsOwnBus();
    return RUN_ALL_TESTS();
}
