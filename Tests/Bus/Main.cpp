// A bus of its own for the program, with nobody on it yet: nothing reaches the developer's own session.
#include <gtest/gtest.h>

#include "Tests/Bus/BusFixture.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Programs under test end in a process of their own, which has threads.
    testing::GTEST_FLAG(death_test_style) = "threadsafe";
    GiveTheProgramItsOwnBus();
    return RUN_ALL_TESTS();
}
