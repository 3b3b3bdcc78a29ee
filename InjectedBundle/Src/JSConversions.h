// Conversions between JavaScript and C++ values. Every one is total: no input is undefined behaviour, and no
// text is silently cut because one character of it is ill-formed.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace OipfJavaScript {

// UTF-8 of a JavaScript string; each lone surrogate becomes U+FFFD. NULs are kept.
[[nodiscard]] std::string ToUtf8(JSStringRef string);

// UTF-8 of the value's string conversion. The conversion can run page code, and so fail: then the result is
// false, the exception slot (which may be null) is filled, and the text is untouched.
[[nodiscard]] bool ToUtf8(JSContextRef context, JSValueRef value, std::string& text, JSValueRef* exception);

// UTF-16 of UTF-8; each ill-formed byte becomes U+FFFD. NULs are kept.
[[nodiscard]] std::u16string ToUtf16(std::string_view utf8);

// A JavaScript string from UTF-8; each ill-formed byte becomes U+FFFD. NULs are kept. Never null.
[[nodiscard]] JSValueRef MakeString(JSContextRef context, std::string_view utf8);

// A JavaScript string of one character (0 to 255) per byte.
[[nodiscard]] JSValueRef MakeByteString(JSContextRef context, std::string_view bytes);

// One byte per character, of which the low eight bits are taken.
[[nodiscard]] std::string ToBytes(JSStringRef string);

// UTF-8 of the text that MakeByteString makes.
[[nodiscard]] std::string BytesToUtf8(std::string_view bytes);

// What is well-formed UTF-8 in a payload; the bytes that are not are left out. NULs are kept.
[[nodiscard]] std::string WellFormedUtf8(std::string_view bytes);

// The name of the value's type, for log lines.
[[nodiscard]] const char* TypeName(JSContextRef context, JSValueRef value);

// Numbers are truncated toward zero; NaN is 0; what lies outside the type's range becomes its nearest bound,
// except that a negative number keeps its two's complement when it is read as unsigned (-1 is 4294967295), so
// that a negative index never names a first element.
[[nodiscard]] int32_t ToInt32(double number);
[[nodiscard]] uint32_t ToUint32(double number);
[[nodiscard]] int64_t ToInt64(double number);

}  // namespace OipfJavaScript
