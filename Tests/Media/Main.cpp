#include <glib.h>
#include <gtest/gtest.h>

#include "Tests/Bus/BusFixture.h"
#include "Tests/Media/PlayerFixture.h"

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests) && !MediaTest::makeMedia())
        return 1;
    GiveTheProgramItsOwnBus();
    g_setenv("HBBTV_MEDIA", HBBTV_MEDIA, TRUE);
    return RUN_ALL_TESTS();
}
