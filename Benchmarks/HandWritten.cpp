#include "Benchmarks/HandWritten.h"

#include <cmath>
#include <cstdint>

#include "InjectedBundle/Src/JSHandles.h"

namespace Benchmarks {

namespace {

using OipfJavaScript::JSStringHandle;

struct Native {
    int32_t value = 1;
};

JSClassRef Class();

Native* NativeOf(JSObjectRef object) {
    return static_cast<Native*>(JSObjectGetPrivate(object));
}

void Initialise(JSContextRef /*context*/, JSObjectRef /*object*/) {}

void Finalise(JSObjectRef object) {
    delete NativeOf(object);
}

bool HasProperty(JSContextRef /*context*/, JSObjectRef /*object*/, JSStringRef name) {
    return JSStringIsEqualToUTF8CString(name, "value");
}

JSValueRef GetProperty(JSContextRef context, JSObjectRef object, JSStringRef name,
                       JSValueRef* /*exception*/) {
    const Native* native = NativeOf(object);
    if (native == nullptr || !JSStringIsEqualToUTF8CString(name, "value"))
        return JSValueMakeNull(context);
    return JSValueMakeNumber(context, native->value);
}

bool SetProperty(JSContextRef context, JSObjectRef object, JSStringRef name, JSValueRef value,
                 JSValueRef* /*exception*/) {
    if (!JSStringIsEqualToUTF8CString(name, "value"))
        return false;
    Native* native = NativeOf(object);
    if (native != nullptr && JSValueIsNumber(context, value)) {
        const double number = JSValueToNumber(context, value, nullptr);
        if (std::isfinite(number) && std::abs(number) <= INT32_MAX)
            native->value = static_cast<int32_t>(number);
    }
    return true;
}

JSValueRef Refuse(JSContextRef context, const char* text, JSValueRef* exception) {
    const JSValueRef message = JSValueMakeString(context, JSStringHandle(text).Get());
    *exception = JSObjectMakeError(context, 1, &message, nullptr);
    return JSValueMakeNull(context);
}

JSValueRef Add(JSContextRef context, JSObjectRef /*function*/, JSObjectRef object, size_t count,
               const JSValueRef arguments[], JSValueRef* exception) {
    if (!JSValueIsObjectOfClass(context, object, Class()))
        return JSValueMakeNull(context);
    if (count != 1 || !JSValueIsNumber(context, arguments[0]))
        return Refuse(context, "Argument count or the argument types are bad", exception);
    const double number = JSValueToNumber(context, arguments[0], exception);
    if (!std::isfinite(number) || std::abs(number) > INT32_MAX)
        return JSValueMakeNull(context);
    return JSValueMakeNumber(context, NativeOf(object)->value + static_cast<int32_t>(number));
}

JSObjectRef Construct(JSContextRef context, JSObjectRef /*constructor*/, size_t /*count*/,
                      const JSValueRef /*arguments*/[], JSValueRef* exception) {
    Refuse(context, "Not allowed to create HandWritten object directly", exception);
    return nullptr;
}

JSClassRef Class() {
    static const JSStaticValue s_values[] = {{"value", &GetProperty, &SetProperty, kJSPropertyAttributeNone},
                                             {nullptr, nullptr, nullptr, 0}};
    static const JSStaticFunction s_functions[] = {{"add", &Add, kJSPropertyAttributeReadOnly},
                                                   {nullptr, nullptr, 0}};
    static const JSClassRef s_class = [] {
        JSClassDefinition definition = kJSClassDefinitionEmpty;
        definition.className = "HandWritten";
        definition.staticValues = s_values;
        definition.staticFunctions = s_functions;
        definition.initialize = &Initialise;
        definition.finalize = &Finalise;
        definition.hasProperty = &HasProperty;
        definition.getProperty = &GetProperty;
        definition.setProperty = &SetProperty;
        definition.callAsConstructor = &Construct;
        return JSClassCreate(&definition);
    }();
    return s_class;
}

}  // namespace

JSObjectRef CreateHandWritten(JSContextRef context) {
    return JSObjectMake(context, Class(), new Native);
}

}  // namespace Benchmarks
