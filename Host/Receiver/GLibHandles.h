// Owners of GLib values: the deleter of each is the C type's own free function.
#pragma once

#include <memory>

#include <gio/gio.h>

namespace Receiver {

template <auto Free>
struct FreeWith {
    template <typename Value>
    void operator()(Value* value) const {
        Free(value);
    }
};

using CharPtr = std::unique_ptr<char, FreeWith<g_free>>;
using ErrorPtr = std::unique_ptr<GError, FreeWith<g_error_free>>;
using VariantPtr = std::unique_ptr<GVariant, FreeWith<g_variant_unref>>;
using MainLoopPtr = std::unique_ptr<GMainLoop, FreeWith<g_main_loop_unref>>;
using NodeInfoPtr = std::unique_ptr<GDBusNodeInfo, FreeWith<g_dbus_node_info_unref>>;

template <typename Object>
using ObjectPtr = std::unique_ptr<Object, FreeWith<g_object_unref>>;

// Hands the raw place to a C function and takes over what it leaves there: f(Out(pointer)).
template <typename Pointer>
class Out {
 public:
    explicit Out(Pointer& target) : m_target(target) {}
    Out(const Out&) = delete;
    Out& operator=(const Out&) = delete;
    ~Out() { m_target.reset(m_raw); }

    // NOLINTNEXTLINE(google-explicit-constructor): stands where the C function's argument stands.
    operator typename Pointer::element_type **() { return &m_raw; }

 private:
    Pointer& m_target;
    typename Pointer::element_type* m_raw = nullptr;
};

}  // namespace Receiver
