// Owning handle of a JavaScriptCore string, and its conversions; functions that script calls.
#pragma once

#include <memory>
#include <span>
#include <string>
#include <type_traits>
#include <vector>

#include <JavaScriptCore/JavaScript.h>

namespace WebProcess {

struct JSStringDeleter {
    void operator()(JSStringRef string) const { JSStringRelease(string); }
};
using JSStringHandle = std::unique_ptr<std::remove_pointer_t<JSStringRef>, JSStringDeleter>;

[[nodiscard]] inline JSStringHandle makeString(const char* utf8) {
    return JSStringHandle(JSStringCreateWithUTF8CString(utf8));
}

// For log lines: what cannot be converted is an empty text.
[[nodiscard]] inline std::string toText(JSContextRef context, JSValueRef value) {
    const JSStringHandle string(JSValueToStringCopy(context, value, nullptr));
    if (!string)
        return {};
    std::vector<char> buffer(JSStringGetMaximumUTF8CStringSize(string.get()));
    const size_t written = JSStringGetUTF8CString(string.get(), buffer.data(), buffer.size());
    return written > 0 ? std::string(buffer.data(), written - 1) : std::string();
}

template <auto member>
struct ScriptFunction;

template <typename T, JSValueRef (T::*member)(JSContextRef, std::span<const JSValueRef>)>
struct ScriptFunction<member> {
    static JSValueRef call(JSContextRef context, JSObjectRef function, JSObjectRef, size_t count,
                           const JSValueRef arguments[], JSValueRef*) {
        return (static_cast<T*>(JSObjectGetPrivate(function))->*member)(context, {arguments, count});
    }
    static JSObjectRef make(JSContextRef context, T* owner) {
        static const JSClassRef functionClass = [] {
            JSClassDefinition definition = kJSClassDefinitionEmpty;
            definition.callAsFunction = call;
            return JSClassCreate(&definition);  // Kept for the process.
        }();
        return JSObjectMake(context, functionClass, owner);
    }
};

// A function that calls the member function of an object, which must outlive every page.
template <auto member, typename T>
[[nodiscard]] JSObjectRef functionOf(JSContextRef context, T* owner) {
    return ScriptFunction<member>::make(context, owner);
}

}  // namespace WebProcess
