#include <gio/gio.h>
#include <gtest/gtest.h>

#include "Host/Inc/GHandles.h"
#include "Tests/Bus/BusFixture.h"
#include "Tests/Media/PlayerFixture.h"

namespace {

// GLib's network code connects to the session bus on its own; such a connection ends the program with its
// bus.
class BusWithoutConsequences : public testing::Environment {
 public:
    void TearDown() override {
        const Host::GObjectHandle<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
        if (bus)
            g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    }
};

}  // namespace

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (!testing::GTEST_FLAG(list_tests) && !MediaTest::makeMedia())
        return 1;
    GiveTheProgramItsOwnBus();
    g_setenv("HBBTV_MEDIA", HBBTV_MEDIA, TRUE);
    testing::AddGlobalTestEnvironment(new BusWithoutConsequences);
    return RUN_ALL_TESTS();
}
