#include "InjectedBundle/Src/PageRecord.h"

#include "InjectedBundle/Src/BindingClass.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/RuntimeObjects.h"

namespace OipfJavaScript::PageRecord {

namespace {

std::string TextOfObject(JSContextRef context, JSObjectRef object) {
    if (const char* id = BindingClass::IdOf(context, object))
        return id;
    if (JSObjectIsFunction(context, object))
        return "function";
    return JSValueIsArray(context, object) ? "array" : JSValueIsDate(context, object) ? "date" : "object";
}

std::string TextOfThrown(JSContextRef context, JSValueRef thrown) {
    const std::optional<std::string> own = TextOfException(context, thrown);
    return own ? *own : TextOf(context, thrown);
}

}  // namespace

std::string TextOf(JSContextRef context, JSValueRef value) {
    switch (JSValueGetType(context, value)) {
        case kJSTypeUndefined:
            return "undefined";
        case kJSTypeNull:
            return "null";
        case kJSTypeObject:
            // An object is its own conversion to one.
            return TextOfObject(context, const_cast<JSObjectRef>(value));
        case kJSTypeSymbol:
            return "symbol";
        default: {
            std::string text;
            (void)ToUtf8(context, value, text, nullptr);
            return JSValueIsString(context, value) ? '"' + text + '"' : text;
        }
    }
}

std::string TextOf(JSContextRef context, std::span<const JSValueRef> values,
                   std::span<const char* const> names) {
    std::string all;
    for (size_t i = 0; i < values.size(); ++i) {
        all += i > 0 ? ", " : "";
        if (i < names.size())
            all += std::string(names[i]) + '=';
        all += TextOf(context, values[i]);
    }
    return all;
}

void BeginCall(HbbTVPlatform::PCRecord& record, const char* id, const char* where,
               const CallArguments& call) {
    std::string name = where + 2;
    name[0] = static_cast<char>(name[0] | 0x20);
    record.Begin("call", std::string(id) + '.' + name, TextOf(call.context, {call.values, call.count}));
}

void SetOutcome(HbbTVPlatform::PCRecord& record, JSContextRef context, JSValueRef result,
                JSValueRef exception) {
    record.StopClock();
    if (exception != nullptr)
        record.SetError(TextOfThrown(context, exception));
    else if (result != nullptr)
        record.SetResult(TextOf(context, result));
}

}  // namespace OipfJavaScript::PageRecord
