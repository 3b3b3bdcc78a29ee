// One small type for each type that an interface description can name: how it is recognised among a call's
// arguments, converted for the implementation, and converted back.
//
// Accepts() decides by the JavaScript type alone and runs no page code. FromJS() gives false for a value that
// makes the whole call answer null without reaching the implementation (NaN, an object of a foreign class).
// Where a type has IsExactly(), it also tells whether FromJS() would take the value: it chooses among the
// forms of an operation.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cmath>
#include <memory>
#include <optional>
#include <string>

#include "InjectedBundle/Src/BindingClass.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"

namespace OipfJavaScript::Idl {

struct Undefined {};

template <typename NativeType, NativeType (*Convert)(double)>
struct Number {
    using Native = NativeType;
    static constexpr const char* kName = "number";
    static bool Accepts(JSContextRef context, JSValueRef value) { return JSValueIsNumber(context, value); }
    static bool FromJS(const char*, JSContextRef context, JSValueRef value, Native& native) {
        const double number = JSValueToNumber(context, value, nullptr);
        native = Convert(number);
        return !std::isnan(number);
    }
    static JSValueRef ToJS(JSContextRef context, Native native, JSValueRef*) {
        return JSValueMakeNumber(context, static_cast<double>(native));
    }
};

inline double Same(double number) {
    return number;
}

using Long = Number<int32_t, ToInt32>;
using UnsignedLong = Number<uint32_t, ToUint32>;
using LongLong = Number<int64_t, ToInt64>;
using Double = Number<double, Same>;

struct Boolean {
    using Native = bool;
    static constexpr const char* kName = "boolean";
    static bool Accepts(JSContextRef context, JSValueRef value) { return JSValueIsBoolean(context, value); }
    static bool FromJS(const char*, JSContextRef context, JSValueRef value, bool& native) {
        native = JSValueToBoolean(context, value);
        return true;
    }
    static JSValueRef ToJS(JSContextRef context, bool native, JSValueRef*) {
        return JSValueMakeBoolean(context, native);
    }
};

struct String {
    using Native = std::string;
    static constexpr const char* kName = "string";
    static bool Accepts(JSContextRef context, JSValueRef value) { return JSValueIsString(context, value); }
    static bool FromJS(const char*, JSContextRef context, JSValueRef value, std::string& native) {
        return ToUtf8(context, value, native, nullptr);
    }
    static JSValueRef ToJS(JSContextRef context, const std::string& native, JSValueRef*) {
        return MakeString(context, native);
    }
};

// One character per byte.
struct Bytes {
    using Native = std::string;
    static constexpr const char* kName = "string";
    static bool Accepts(JSContextRef context, JSValueRef value) { return JSValueIsString(context, value); }
    static bool FromJS(const char*, JSContextRef context, JSValueRef value, std::string& native) {
        const auto string = JSStringHandle::Adopt(JSValueToStringCopy(context, value, nullptr));
        native = ToBytes(string.Get());
        return true;
    }
    static JSValueRef ToJS(JSContextRef context, const std::string& native, JSValueRef*) {
        return MakeByteString(context, native);
    }
};

struct Any {
    using Native = JSValueRef;
    static constexpr const char* kName = "value";
    static bool Accepts(JSContextRef, JSValueRef) { return true; }
    static bool FromJS(const char*, JSContextRef, JSValueRef value, JSValueRef& native) {
        native = value;
        return true;
    }
    static JSValueRef ToJS(JSContextRef context, JSValueRef native, JSValueRef*) {
        return native != nullptr ? native : JSValueMakeNull(context);
    }
};

// An object of one binding class. As an argument the implementation gets a pointer that is good during the
// call; as a result it hands over a new binding object, or null.
template <class Binding>
struct Object {
    using Native = Binding*;
    static constexpr const char* kName = "object";
    static bool Accepts(JSContextRef context, JSValueRef value) { return JSValueIsObject(context, value); }
    static bool IsExactly(JSContextRef context, JSValueRef value) {
        return Binding::FromJS(nullptr, context, value) != nullptr;
    }
    static bool FromJS(const char* where, JSContextRef context, JSValueRef value, Binding*& native) {
        native = Binding::FromJS(where, context, value);
        return native != nullptr;
    }
    static JSValueRef ToJS(JSContextRef context, std::unique_ptr<Binding> native, JSValueRef* exception) {
        if (!native)
            return JSValueMakeNull(context);
        return Binding::CreateObject(context, native.release(), exception);
    }
};

// null and undefined are accepted besides the type itself.
template <class Type>
struct Nullable {
    using Native = std::optional<typename Type::Native>;
    static constexpr const char* kName = Type::kName;
    static bool Accepts(JSContextRef context, JSValueRef value) {
        return JSValueIsNull(context, value) || JSValueIsUndefined(context, value) ||
               Type::Accepts(context, value);
    }
    static bool IsExactly(JSContextRef context, JSValueRef value) requires requires {
        Type::IsExactly(context, value);
    }
    {
        return JSValueIsNull(context, value) || JSValueIsUndefined(context, value) ||
               Type::IsExactly(context, value);
    }
    static bool FromJS(const char* where, JSContextRef context, JSValueRef value, Native& native) {
        if (JSValueIsNull(context, value) || JSValueIsUndefined(context, value))
            return true;
        return Type::FromJS(where, context, value, native.emplace());
    }
    template <typename Result>
    static JSValueRef ToJS(JSContextRef context, Result&& native, JSValueRef* exception) {
        if constexpr (requires { native.has_value(); })
            return native ? Type::ToJS(context, *std::forward<Result>(native), exception)
                          : JSValueMakeNull(context);
        else
            return Type::ToJS(context, std::forward<Result>(native), exception);
    }
};

// A trailing argument that may be missing; undefined counts as missing.
template <class Type>
struct Optional {
    using Native = std::optional<typename Type::Native>;
    static bool Accepts(JSContextRef context, JSValueRef value) {
        return JSValueIsUndefined(context, value) || Type::Accepts(context, value);
    }
    static bool IsExactly(JSContextRef context, JSValueRef value) requires requires {
        Type::IsExactly(context, value);
    }
    { return JSValueIsUndefined(context, value) || Type::IsExactly(context, value); }
    static bool FromJS(const char* where, JSContextRef context, JSValueRef value, Native& native) {
        if (JSValueIsUndefined(context, value))
            return true;
        return Type::FromJS(where, context, value, native.emplace());
    }
};

// A trailing argument that pages give and that has no meaning here.
struct Ignored {
    using Native = std::optional<bool>;
    static bool Accepts(JSContextRef, JSValueRef) { return true; }
    static bool FromJS(const char*, JSContextRef, JSValueRef, Native&) { return true; }
};

template <class Type>
inline constexpr bool kMayBeMissing = false;
template <class Type>
inline constexpr bool kMayBeMissing<Optional<Type>> = true;
template <>
inline constexpr bool kMayBeMissing<Ignored> = true;

// Whether an implementation's member may return a Native where the description says Type. Numbers are not
// converted.
template <class Type, typename Native>
inline constexpr bool kReturns = requires(JSContextRef context, Native native, JSValueRef* exception) {
    Type::ToJS(context, std::move(native), exception);
};
template <typename NativeType, NativeType (*Convert)(double), typename Native>
inline constexpr bool kReturns<Number<NativeType, Convert>, Native> = std::is_same_v<NativeType, Native>;
template <class Type, typename Native>
inline constexpr bool kReturns<Nullable<Type>, std::optional<Native>> = kReturns<Type, Native>;
template <class Type, typename Native>
inline constexpr bool kReturns<Nullable<Type>, Native> = kReturns<Type, Native>;
template <>
inline constexpr bool kReturns<Undefined, void> = true;

}  // namespace OipfJavaScript::Idl
