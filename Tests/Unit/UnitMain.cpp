// A bus of its own for the program, with nobody on it: calls to the receiver fail at once, and nothing reaches the
// developer's own session.

#include <gio/gio.h>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    GTestDBus* bus = g_test_dbus_new(G_TEST_DBUS_NONE);
    g_test_dbus_up(bus);
    const int result = RUN_ALL_TESTS();
    g_test_dbus_stop(bus);
    g_object_unref(bus);
    return result;
}
