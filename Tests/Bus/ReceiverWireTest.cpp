// The wire of the running receiver against what it says of itself.

#include <gio/gio.h>

#include "Host/Inc/GHandles.h"
#include "Host/Inc/ReceiverNames.h"
#include "Tests/Bus/FakeService.h"
#include "Tests/Bus/ReceiverFixture.h"

namespace {

using Host::GNodeInfo;
using Host::GVariantHandle;

class AReceiverOnTheWire : public ReceiverTest::RunningReceiver {
 protected:
    // What the object at the path says of itself.
    GNodeInfo introspected(const char* destination, const char* path) {
        const GVariantHandle reply(g_dbus_connection_call_sync(
            connection(), destination, path, "org.freedesktop.DBus.Introspectable", "Introspect", nullptr,
            G_VARIANT_TYPE("(s)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, nullptr));
        if (!reply)
            return nullptr;
        const char* xml = nullptr;
        g_variant_get(reply.get(), "(&s)", &xml);
        return GNodeInfo(g_dbus_node_info_new_for_xml(xml, nullptr));
    }
};

// Each under the name of its own interface.
TEST_F(AReceiverOnTheWire, AnswersEveryMethodWithTheRightTupleEvenToEmptyArguments) {
    const auto node = introspected("org.vantrel.hbbtv.IDAEBrowserAPI", Receiver::Names::ObjectPath);
    ASSERT_TRUE(node);
    std::size_t answered = 0;
    for (auto** interface = node->interfaces; *interface != nullptr; ++interface) {
        if (!std::string((*interface)->name).starts_with(Receiver::Names::Prefix))
            continue;
        EXPECT_TRUE((*interface)->properties == nullptr || *(*interface)->properties == nullptr);
        for (auto** method = (*interface)->methods; *method != nullptr; ++method) {
            const auto name = std::string((*interface)->name) + "." + (*method)->name;
            const auto reply =
                call(name.substr(std::string(Receiver::Names::Prefix).size()), ZerosOf((*method)->in_args));
            ASSERT_TRUE(reply.value) << name << ": " << reply.error;
            EXPECT_EQ(g_variant_get_type_string(reply.value.get()), TupleOf((*method)->out_args)) << name;
            ++answered;
        }
    }
    EXPECT_EQ(answered, 121u);

    // One door: each of these calls, and nothing else, is in the log.
    EXPECT_EQ(calls().size(), 121u);
}

TEST_F(AReceiverOnTheWire, KeepsTheControlInterfaceApartFromTheProduct) {
    const auto product = introspected("org.vantrel.hbbtv.IDAEBrowserAPI", Receiver::Names::ObjectPath);
    ASSERT_TRUE(product);
    EXPECT_EQ(g_dbus_node_info_lookup_interface(product.get(), Receiver::Names::Control), nullptr);
    const auto control = introspected(Receiver::Names::Control, Receiver::Names::ControlPath);
    ASSERT_TRUE(control);
    EXPECT_NE(g_dbus_node_info_lookup_interface(control.get(), Receiver::Names::Control), nullptr);
}

}  // namespace
