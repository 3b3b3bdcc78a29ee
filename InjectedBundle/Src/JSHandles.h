// Owners of JavaScriptCore values. The only place where strings and classes are released and values
// unprotected.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <string>
#include <utility>

namespace OipfJavaScript {

// Owns one reference to a JavaScript string.
class JSStringHandle {
 public:
    JSStringHandle() = default;
    explicit JSStringHandle(const char* utf8) : m_string(JSStringCreateWithUTF8CString(utf8)) {}
    JSStringHandle(const JSStringHandle&) = delete;
    JSStringHandle& operator=(const JSStringHandle&) = delete;
    JSStringHandle(JSStringHandle&& other) noexcept : m_string(std::exchange(other.m_string, nullptr)) {}
    JSStringHandle& operator=(JSStringHandle&& other) noexcept {
        std::swap(m_string, other.m_string);
        return *this;
    }
    ~JSStringHandle() {
        if (m_string != nullptr)
            JSStringRelease(m_string);
    }

    // Takes over a reference that the caller owns, as the "Create" and "Copy" functions give it.
    [[nodiscard]] static JSStringHandle Adopt(JSStringRef string) {
        JSStringHandle handle;
        handle.m_string = string;
        return handle;
    }

    [[nodiscard]] JSStringRef Get() const { return m_string; }
    explicit operator bool() const { return m_string != nullptr; }

 private:
    JSStringRef m_string = nullptr;
};

// The names of an object's enumerable properties, its prototypes' included.
class JSPropertyNames {
 public:
    JSPropertyNames(JSContextRef context, JSObjectRef object)
        : m_names(JSObjectCopyPropertyNames(context, object)) {}
    JSPropertyNames(const JSPropertyNames&) = delete;
    JSPropertyNames& operator=(const JSPropertyNames&) = delete;
    ~JSPropertyNames() { JSPropertyNameArrayRelease(m_names); }

    [[nodiscard]] size_t Count() const { return JSPropertyNameArrayGetCount(m_names); }
    // Owned by the list.
    [[nodiscard]] JSStringRef At(size_t index) const {
        return JSPropertyNameArrayGetNameAtIndex(m_names, index);
    }

 private:
    JSPropertyNameArrayRef m_names;
};

// Keeps a value, and through it the page that it belongs to, alive. Never let one be destroyed in a
// finaliser: releasing it calls into the engine; see Abandon().
class ProtectedValue {
 public:
    ProtectedValue() = default;
    ProtectedValue(JSContextRef context, JSValueRef value)
        : m_context(JSContextGetGlobalContext(context)), m_value(value) {
        JSGlobalContextRetain(m_context);
        JSValueProtect(m_context, m_value);
    }
    ProtectedValue(const ProtectedValue&) = delete;
    ProtectedValue& operator=(const ProtectedValue&) = delete;
    ProtectedValue(ProtectedValue&& other) noexcept
        : m_context(std::exchange(other.m_context, nullptr)),
          m_value(std::exchange(other.m_value, nullptr)) {}
    ProtectedValue& operator=(ProtectedValue&& other) noexcept {
        std::swap(m_context, other.m_context);
        std::swap(m_value, other.m_value);
        return *this;
    }
    ~ProtectedValue() { Release(); }

    void Release() {
        if (m_context == nullptr)
            return;
        JSValueUnprotect(m_context, m_value);
        JSGlobalContextRelease(m_context);
        Abandon();
    }

    // Forgets the value without a call into the engine: for the one case that the engine itself is going
    // away.
    void Abandon() {
        m_context = nullptr;
        m_value = nullptr;
    }

    [[nodiscard]] JSValueRef Get() const { return m_value; }
    [[nodiscard]] JSGlobalContextRef Context() const { return m_context; }
    explicit operator bool() const { return m_context != nullptr; }

 private:
    JSGlobalContextRef m_context = nullptr;
    JSValueRef m_value = nullptr;
};

}  // namespace OipfJavaScript
