// The objects behind the opaque references of the bundle C API: counted, and used on the main thread only.
#pragma once

#include <string>
#include <utility>

#include "Platform/Inc/WKTypes.h"

namespace WebProcess {

class WKObject {
 public:
    WKObject() = default;
    WKObject(const WKObject&) = delete;
    WKObject& operator=(const WKObject&) = delete;
    virtual ~WKObject() = default;

    void retain() { ++m_references; }
    void release();

 private:
    int m_references = 1;
};

// Keeps one reference for as long as it lives.
template <typename T>
class WKRetained {
 public:
    WKRetained() = default;
    // Takes over the reference that comes with a new object.
    [[nodiscard]] static WKRetained adopt(T* object) {
        WKRetained retained;
        retained.m_object = object;
        return retained;
    }
    explicit WKRetained(T* object) : m_object(object) {
        if (m_object)
            m_object->retain();
    }
    WKRetained(const WKRetained& other) : WKRetained(other.m_object) {}
    WKRetained(WKRetained&& other) noexcept : m_object(other.leak()) {}
    WKRetained& operator=(WKRetained other) noexcept {
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~WKRetained() {
        if (m_object)
            m_object->release();
    }

    [[nodiscard]] T* get() const { return m_object; }
    // The caller owns the reference from here on.
    [[nodiscard]] T* leak() { return std::exchange(m_object, nullptr); }
    T* operator->() const { return m_object; }
    T& operator*() const { return *m_object; }
    explicit operator bool() const { return m_object != nullptr; }

 private:
    T* m_object = nullptr;
};

// A WKString: always well-formed UTF-8.
class Text final : public WKObject {
 public:
    // Ill-formed text gives an empty string, as in WebKit.
    explicit Text(const char* utf8);

    [[nodiscard]] const std::string& utf8() const { return m_utf8; }
    // Writes whole characters and a terminator; returns the bytes written, terminator included.
    [[nodiscard]] size_t copy(char* buffer, size_t size) const;

 private:
    std::string m_utf8;
};

// Every reference points at the WKObject base, so that WKRelease can take any of them.
template <typename Ref>
[[nodiscard]] Ref toRef(const WKObject* object) {
    return reinterpret_cast<Ref>(object);
}

// The reference's type promises the object's type.
template <typename T>
[[nodiscard]] T* fromRef(const void* reference) {
    return static_cast<T*>(const_cast<WKObject*>(static_cast<const WKObject*>(reference)));
}

}  // namespace WebProcess
