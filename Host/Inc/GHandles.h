// Owning handles of GLib's C types: the desktop host's one place where they are freed.
#pragma once

#include <memory>
#include <string>

#include <gio/gio.h>

namespace Host {

template <auto freeFunction>
struct GFree {
    template <typename T>
    void operator()(T* pointer) const {
        freeFunction(pointer);
    }
};

using GChars = std::unique_ptr<char, GFree<&g_free>>;
using GErrorHandle = std::unique_ptr<GError, GFree<&g_error_free>>;
using GStrings = std::unique_ptr<char*, GFree<&g_strfreev>>;
using GVariantHandle = std::unique_ptr<GVariant, GFree<&g_variant_unref>>;
using GBytesHandle = std::unique_ptr<GBytes, GFree<&g_bytes_unref>>;
using GMainContextHandle = std::unique_ptr<GMainContext, GFree<&g_main_context_unref>>;
using GMainLoopHandle = std::unique_ptr<GMainLoop, GFree<&g_main_loop_unref>>;
using GNodeInfo = std::unique_ptr<GDBusNodeInfo, GFree<&g_dbus_node_info_unref>>;

template <typename T>
using GObjectHandle = std::unique_ptr<T, GFree<&g_object_unref>>;

// One more reference to an object that somebody else owns.
template <typename T>
[[nodiscard]] GObjectHandle<T> retain(T* object) {
    return GObjectHandle<T>(object ? static_cast<T*>(g_object_ref(object)) : nullptr);
}

// The out-parameter of a fallible call: pass `out()`, then ask.
class GErrorSlot {
 public:
    GErrorSlot() = default;
    GErrorSlot(const GErrorSlot&) = delete;
    GErrorSlot& operator=(const GErrorSlot&) = delete;
    ~GErrorSlot() { g_clear_error(&m_error); }

    [[nodiscard]] GError** out() {
        g_clear_error(&m_error);
        return &m_error;
    }
    [[nodiscard]] explicit operator bool() const { return m_error != nullptr; }
    [[nodiscard]] const char* message() const { return m_error ? m_error->message : "unknown error"; }
    [[nodiscard]] bool is(GQuark domain, int code) const { return g_error_matches(m_error, domain, code); }

 private:
    GError* m_error = nullptr;
};

// A source of the main loop (timeout, file descriptor, signal); removed with its handle unless it has run
// out.
class GSourceHandle {
 public:
    GSourceHandle() = default;
    explicit GSourceHandle(unsigned id) : m_id(id) {}
    GSourceHandle(const GSourceHandle&) = delete;
    GSourceHandle& operator=(const GSourceHandle&) = delete;
    ~GSourceHandle() { reset(); }

    void reset(unsigned id = 0) {
        if (m_id != 0)
            g_source_remove(m_id);
        m_id = id;
    }
    // The callback answered G_SOURCE_REMOVE: the id is no longer ours.
    void forget() { m_id = 0; }
    [[nodiscard]] bool active() const { return m_id != 0; }

 private:
    unsigned m_id = 0;
};

}  // namespace Host
