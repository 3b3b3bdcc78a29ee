#include "Host/WebProcess/FrameScripts.h"

#include <malloc.h>

#include <glib.h>

#include "Host/WebProcess/JSHandles.h"

// Exported by the engine, though not declared in its installed headers.
extern "C" void JSSynchronousGarbageCollectForDebugging(JSContextRef context);
extern "C" JSObjectRef JSGetMemoryUsageStatistics(JSContextRef context);

namespace WebProcess {

extern const std::string_view s_browserExtensions;

namespace {

void logException(JSContextRef context, JSValueRef exception, const char* name) {
    g_warning("%s: %s", name, toText(context, exception).c_str());
}

// The value of a function expression; null (and a log line) when it does not evaluate to one.
JSObjectRef evaluateFunction(JSGlobalContextRef context, const char* source, const char* name) {
    const JSStringHandle script = makeString(source);
    JSValueRef exception = nullptr;
    const JSValueRef value = JSEvaluateScript(context, script.get(), nullptr, nullptr, 1, &exception);
    if (exception) {
        logException(context, exception, name);
        return nullptr;
    }
    return JSValueToObject(context, value, nullptr);
}

template <size_t count>
void callFunction(JSGlobalContextRef context, JSObjectRef function, const JSValueRef (&arguments)[count],
                  const char* name) {
    if (!function)
        return;
    JSValueRef exception = nullptr;
    JSObjectCallAsFunction(context, function, nullptr, count, arguments, &exception);
    if (exception)
        logException(context, exception, name);
}

JSValueRef collectGarbage(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[],
                          JSValueRef*) {
    JSSynchronousGarbageCollectForDebugging(context);
    malloc_trim(0);
    return JSGetMemoryUsageStatistics(context);
}

JSValueRef judgeKey(JSContextRef context, JSObjectRef function, JSObjectRef, size_t count,
                    const JSValueRef arguments[], JSValueRef*) {
    auto* judge = static_cast<KeyJudge*>(JSObjectGetPrivate(function));
    const auto keyCode =
        count > 1 ? static_cast<unsigned>(JSValueToNumber(context, arguments[0], nullptr)) : 0;
    return JSValueMakeBoolean(context, judge->lets(keyCode, JSValueToBoolean(context, arguments[1])));
}

JSValueRef reachedDocumentEnd(JSContextRef context, JSObjectRef function, JSObjectRef, size_t count,
                              const JSValueRef arguments[], JSValueRef*) {
    auto* listener = static_cast<DocumentEndListener*>(JSObjectGetPrivate(function));
    listener->didReachDocumentEnd(JSContextGetGlobalContext(context),
                                  count > 0 && JSValueToBoolean(context, arguments[0]));
    return JSValueMakeUndefined(context);
}

// The function with this as its private data.
template <auto function>
JSObjectRef functionOf(JSContextRef context, void* data) {
    static const JSClassRef functionClass = [] {
        JSClassDefinition definition = kJSClassDefinitionEmpty;
        definition.callAsFunction = function;
        return JSClassCreate(&definition);  // Kept for the process.
    }();
    return JSObjectMake(context, functionClass, data);
}

}  // namespace

void runScript(JSGlobalContextRef context, const std::string& source, const char* name) {
    const JSStringHandle script = makeString(source.c_str());
    const JSStringHandle url = makeString(name);
    JSValueRef exception = nullptr;
    JSEvaluateScript(context, script.get(), nullptr, url.get(), 1, &exception);
    if (exception)
        logException(context, exception, name);
}

void runBrowserExtensions(JSGlobalContextRef context, JSObjectRef glass) {
    static constexpr char kName[] = "browser extensions";
    static const std::string s_function =
        std::string("(glass => { 'use strict';\n").append(s_browserExtensions).append("})");
    const JSValueRef arguments[] = {glass};
    callFunction(context, evaluateFunction(context, s_function.c_str(), kName), arguments, kName);
}

void defineKeyNames(JSGlobalContextRef context) {
    static const std::string s_script = R"(
        for (const name of Object.keys(globalThis.KeyEvent ?? {})) {
            if (name.startsWith('VK_'))
                Object.defineProperty(globalThis, name,
                    { value: KeyEvent[name], writable: true, enumerable: false, configurable: true });
        }
    )";
    runScript(context, s_script, "key names");
}

void listenForDocumentEnd(JSGlobalContextRef context, DocumentEndListener& listener) {
    static constexpr char kName[] = "document end";
    const JSObjectRef listen =
        evaluateFunction(context,
                         "(reached => addEventListener('DOMContentLoaded', () => reached("
                         "window === window.top), { capture: true, once: true }))",
                         kName);
    const JSValueRef arguments[] = {functionOf<reachedDocumentEnd>(context, &listener)};
    callFunction(context, listen, arguments, kName);
}

void judgeKeys(JSGlobalContextRef context, KeyJudge& judge) {
    static constexpr char kName[] = "driver keys";
    // Keys of private characters come from the remote control. A page may replace every built-in.
    const JSObjectRef listen = evaluateFunction(context, R"((lets => {
        const { apply, getOwnPropertyDescriptor } = Reflect;
        const { preventDefault, stopImmediatePropagation } = Event.prototype;
        const { charCodeAt } = String.prototype;
        const getter = name => getOwnPropertyDescriptor(KeyboardEvent.prototype, name).get;
        const keyOf = getter('key');
        const codeOf = getter('keyCode');
        const judge = (event, pressed) => {
            const key = apply(keyOf, event, []);
            const isRemote = key.length === 1 && apply(charCodeAt, key, [0]) >= 0xe000
                && apply(charCodeAt, key, [0]) <= 0xf8ff;
            if (event.isTrusted && !isRemote && !lets(apply(codeOf, event, []), pressed)) {
                apply(preventDefault, event, []);
                apply(stopImmediatePropagation, event, []);
            }
        };
        addEventListener('keydown', event => judge(event, true), true);
        addEventListener('keyup', event => judge(event, false), true);
    }))",
                                                kName);
    const JSValueRef arguments[] = {functionOf<judgeKey>(context, &judge)};
    callFunction(context, listen, arguments, kName);
}

void defineCollectGarbage(JSGlobalContextRef context) {
    const JSStringHandle name = makeString("__collectGarbage");
    const JSObjectRef function = JSObjectMakeFunctionWithCallback(context, name.get(), collectGarbage);
    JSObjectSetProperty(context, JSContextGetGlobalObject(context), name.get(), function,
                        kJSPropertyAttributeDontEnum, nullptr);
}

}  // namespace WebProcess
