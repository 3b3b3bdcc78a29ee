#include "Host/Receiver/SkeletonGlue.h"

namespace Receiver {

namespace {

const GDBusInterfaceVTable* generatedTable(GDBusInterfaceSkeleton* skeleton) {
    auto* parent =
        static_cast<GDBusInterfaceSkeletonClass*>(g_type_class_peek_parent(G_OBJECT_GET_CLASS(skeleton)));
    return parent->get_vtable(skeleton);
}

GQuark dispatcherQuark() {
    static const GQuark quark = g_quark_from_static_string("receiver-dispatcher");
    return quark;
}

GQuark ownerQuark() {
    static const GQuark quark = g_quark_from_static_string("receiver-owner");
    return quark;
}

void callGenerated(GDBusInterfaceSkeleton* skeleton, Host::GObjectHandle<GDBusMethodInvocation> invocation) {
    auto* call = invocation.release();
    generatedTable(skeleton)->method_call(
        g_dbus_method_invocation_get_connection(call), g_dbus_method_invocation_get_sender(call),
        g_dbus_method_invocation_get_object_path(call), g_dbus_method_invocation_get_interface_name(call),
        g_dbus_method_invocation_get_method_name(call), g_dbus_method_invocation_get_parameters(call), call,
        skeleton);
}

void receiveCall(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant*,
                 GDBusMethodInvocation* invocation, gpointer user) {
    auto* skeleton = G_DBUS_INTERFACE_SKELETON(user);
    Host::GObjectHandle<GDBusMethodInvocation> owned(invocation);
    auto* dispatcher = static_cast<CallDispatcher*>(g_object_get_qdata(G_OBJECT(user), dispatcherQuark()));
    if (dispatcher == nullptr) {
        callGenerated(skeleton, std::move(owned));
        return;
    }
    dispatcher->receive(std::move(owned), [skeleton](Host::GObjectHandle<GDBusMethodInvocation> call) {
        callGenerated(skeleton, std::move(call));
    });
}

GDBusInterfaceVTable* receivingTable(GDBusInterfaceSkeleton*) {
    static GDBusInterfaceVTable table = {receiveCall, nullptr, nullptr, {}};
    return &table;
}

void initialiseClass(gpointer type, gpointer) {
    static_cast<GDBusInterfaceSkeletonClass*>(type)->get_vtable = receivingTable;
}

GType derivedType(const SkeletonDescription& description) {
    const auto name = std::string("Receiver") + g_type_name(description.skeleton);
    const auto existing = g_type_from_name(name.c_str());
    if (existing != G_TYPE_INVALID)
        return existing;
    GTypeQuery query = {};
    g_type_query(description.skeleton, &query);
    const auto type =
        g_type_register_static_simple(description.skeleton, name.c_str(), query.class_size, initialiseClass,
                                      query.instance_size, nullptr, static_cast<GTypeFlags>(0));
    const GInterfaceInfo info = {description.fillTable, nullptr, nullptr};
    g_type_add_interface_static(type, description.interface, &info);
    return type;
}

}  // namespace

Host::GObjectHandle<GDBusInterfaceSkeleton> makeSkeleton(const SkeletonDescription& description, void* owner,
                                                         CallDispatcher* dispatcher) {
    Host::GObjectHandle<GDBusInterfaceSkeleton> skeleton(
        G_DBUS_INTERFACE_SKELETON(g_object_new(derivedType(description), nullptr)));
    g_object_set_qdata(G_OBJECT(skeleton.get()), ownerQuark(), owner);
    g_object_set_qdata(G_OBJECT(skeleton.get()), dispatcherQuark(), dispatcher);
    if (dispatcher != nullptr)
        dispatcher->addInterface(*g_dbus_interface_skeleton_get_info(skeleton.get()));
    return skeleton;
}

void* ownerOf(gpointer skeleton) {
    return g_object_get_qdata(G_OBJECT(skeleton), ownerQuark());
}

}  // namespace Receiver
