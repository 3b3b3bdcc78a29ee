// Owners of GLib things: one alias a C type, whose deleter is the type's free function.
#pragma once

#include <memory>

#include <gio/gio.h>

template <auto Free>
struct GLibFree {
    template <typename T>
    void operator()(T* pointer) const {
        Free(pointer);
    }
};

using GCharPtr = std::unique_ptr<char, GLibFree<g_free>>;
using GErrorPtr = std::unique_ptr<GError, GLibFree<g_error_free>>;
using GVariantPtr = std::unique_ptr<GVariant, GLibFree<g_variant_unref>>;

template <typename T>
using GObjectPtr = std::unique_ptr<T, GLibFree<g_object_unref>>;

// Lends a handle to a C function that returns through a pointer to a pointer. What came is owned by the
// handle when the full expression ends. Usage: g_some_call(..., OutPointer(error))
template <typename Handle>
class OutPointer {
 public:
    explicit OutPointer(Handle& handle) : m_handle(handle) {}
    OutPointer(const OutPointer&) = delete;
    OutPointer& operator=(const OutPointer&) = delete;
    ~OutPointer() { m_handle.reset(m_pointer); }

    operator typename Handle::pointer *() { return &m_pointer; }  // NOLINT(google-explicit-constructor)

 private:
    Handle& m_handle;
    typename Handle::pointer m_pointer = nullptr;
};
