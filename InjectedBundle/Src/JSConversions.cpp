#include "InjectedBundle/Src/JSConversions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include <glib.h>

#include "InjectedBundle/Src/JSHandles.h"

namespace OipfJavaScript {

namespace {

constexpr gunichar kReplacement = 0xFFFD;

void Append(std::string& text, gunichar character) {
    char encoded[6];
    text.append(encoded, static_cast<size_t>(g_unichar_to_utf8(character, encoded)));
}

constexpr bool IsHighSurrogate(JSChar unit) {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool IsLowSurrogate(JSChar unit) {
    return (unit & 0xFC00) == 0xDC00;
}

// The long way, for texts that hold more than ASCII. The library's own converters give up at a lone
// surrogate.
std::string Utf8FromUtf16(const JSChar* units, size_t length) {
    std::string text;
    text.reserve(length * 2);
    for (size_t i = 0; i < length; ++i) {
        gunichar character = units[i];
        if (IsHighSurrogate(units[i]) && i + 1 < length && IsLowSurrogate(units[i + 1])) {
            character = 0x10000U + ((units[i] & 0x3FFU) << 10) + (units[i + 1] & 0x3FFU);
            ++i;
        } else if (IsHighSurrogate(units[i]) || IsLowSurrogate(units[i])) {
            character = kReplacement;
        }
        Append(text, character);
    }
    return text;
}

constexpr gunichar kIllFormed = 0xFFFFFFFF;

// Reads the character at `at` and moves past it; kIllFormed for a byte that begins none, and past that byte.
gunichar NextCharacter(const char*& at, const char* end) {
    // The library takes a NUL for the end of the text.
    gunichar character = *at == '\0' ? 0 : g_utf8_get_char_validated(at, end - at);
    if (character > 0x10FFFF)
        character = kIllFormed;
    at = character == 0 || character == kIllFormed ? at + 1 : g_utf8_next_char(at);
    return character;
}

template <typename Integer>
Integer Saturate(double number) {
    if (std::isnan(number))
        return 0;
    constexpr auto lowest = static_cast<double>(std::numeric_limits<Integer>::min());
    constexpr auto highest = static_cast<double>(std::numeric_limits<Integer>::max());
    if (number <= lowest)
        return std::numeric_limits<Integer>::min();
    // For 64 bits the bound itself is not representable: the comparison must catch it too.
    if (number >= highest)
        return std::numeric_limits<Integer>::max();
    return static_cast<Integer>(number);
}

}  // namespace

std::string ToUtf8(JSStringRef string) {
    if (string == nullptr)
        return {};
    const size_t length = JSStringGetLength(string);
    // The engine's own routine is right as long as there is one byte per character, which is nearly always.
    std::string text(length + 1, '\0');
    const size_t written = JSStringGetUTF8CString(string, text.data(), text.size());
    if (written == length + 1) {
        text.resize(length);
        if (std::ranges::all_of(text, [](char c) { return static_cast<unsigned char>(c) < 0x80; }))
            return text;
    }
    return Utf8FromUtf16(JSStringGetCharactersPtr(string), length);
}

bool ToUtf8(JSContextRef context, JSValueRef value, std::string& text, JSValueRef* exception) {
    JSValueRef thrown = nullptr;
    const auto string = JSStringHandle::Adopt(JSValueToStringCopy(context, value, &thrown));
    if (thrown != nullptr || !string) {
        if (exception != nullptr)
            *exception = thrown;
        return false;
    }
    text = ToUtf8(string.Get());
    return true;
}

std::u16string ToUtf16(std::string_view utf8) {
    std::u16string units;
    units.reserve(utf8.size());
    const char* at = utf8.data();
    const char* const end = at + utf8.size();
    while (at < end) {
        gunichar c = NextCharacter(at, end);
        if (c == kIllFormed)
            c = kReplacement;
        if (c < 0x10000) {
            units.push_back(static_cast<char16_t>(c));
        } else {
            units.push_back(static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10)));
            units.push_back(static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF)));
        }
    }
    return units;
}

JSValueRef MakeString(JSContextRef context, std::string_view utf8) {
    // Plain text without NULs is the usual case, and the engine's own conversion the fast one.
    if (utf8.find('\0') == std::string_view::npos &&
        g_utf8_validate(utf8.data(), static_cast<gssize>(utf8.size()), nullptr)) {
        const JSStringHandle string(std::string(utf8).c_str());
        return JSValueMakeString(context, string.Get());
    }
    const std::u16string units = ToUtf16(utf8);
    static_assert(sizeof(JSChar) == sizeof(char16_t));
    const auto string = JSStringHandle::Adopt(
        JSStringCreateWithCharacters(reinterpret_cast<const JSChar*>(units.data()), units.size()));
    return JSValueMakeString(context, string.Get());
}

JSValueRef MakeByteString(JSContextRef context, std::string_view bytes) {
    std::vector<JSChar> units;
    units.reserve(bytes.size());
    for (const char byte : bytes)
        units.push_back(static_cast<unsigned char>(byte));
    const auto string = JSStringHandle::Adopt(JSStringCreateWithCharacters(units.data(), units.size()));
    return JSValueMakeString(context, string.Get());
}

std::string ToBytes(JSStringRef string) {
    std::string bytes;
    const size_t length = JSStringGetLength(string);
    const JSChar* characters = JSStringGetCharactersPtr(string);
    bytes.reserve(length);
    for (size_t i = 0; i < length; ++i)
        bytes.push_back(static_cast<char>(characters[i] & 0xFF));
    return bytes;
}

std::string BytesToUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char byte : bytes)
        Append(text, static_cast<unsigned char>(byte));
    return text;
}

std::string WellFormedUtf8(std::string_view bytes) {
    std::string text;
    text.reserve(bytes.size());
    const char* at = bytes.data();
    const char* const end = at + bytes.size();
    while (at < end) {
        const char* const start = at;
        if (NextCharacter(at, end) != kIllFormed)
            text.append(start, at);
    }
    return text;
}

const char* TypeName(JSContextRef context, JSValueRef value) {
    switch (JSValueGetType(context, value)) {
        case kJSTypeUndefined:
            return "Undefined";
        case kJSTypeNull:
            return "Null";
        case kJSTypeBoolean:
            return "Boolean";
        case kJSTypeNumber:
            return "Number";
        case kJSTypeString:
            return "String";
        case kJSTypeObject:
            return "Object";
        default:
            return "Unknown";
    }
}

int32_t ToInt32(double number) {
    return Saturate<int32_t>(number);
}

uint32_t ToUint32(double number) {
    return number < 0 ? static_cast<uint32_t>(Saturate<int32_t>(number)) : Saturate<uint32_t>(number);
}

int64_t ToInt64(double number) {
    return Saturate<int64_t>(number);
}

}  // namespace OipfJavaScript
