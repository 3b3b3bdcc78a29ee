// Owning handle of a JavaScriptCore string, and its conversions.
#pragma once

#include <memory>
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

}  // namespace WebProcess
