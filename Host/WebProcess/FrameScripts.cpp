#include "Host/WebProcess/FrameScripts.h"

#include <malloc.h>

#include <initializer_list>

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

// Null, and a log line with the name, for a script that throws.
JSValueRef evaluate(JSGlobalContextRef context, const char* source, const char* name,
                    JSStringRef url = nullptr) {
    const JSStringHandle script = makeString(source);
    JSValueRef exception = nullptr;
    const JSValueRef value = JSEvaluateScript(context, script.get(), nullptr, url, 1, &exception);
    if (exception)
        logException(context, exception, name);
    return exception ? nullptr : value;
}

// The source is a function expression.
void callFunction(JSGlobalContextRef context, const char* source, std::initializer_list<JSValueRef> arguments,
                  const char* name) {
    const JSValueRef value = evaluate(context, source, name);
    const JSObjectRef function = value ? JSValueToObject(context, value, nullptr) : nullptr;
    if (!function)
        return;
    JSValueRef exception = nullptr;
    JSObjectCallAsFunction(context, function, nullptr, arguments.size(), arguments.begin(), &exception);
    if (exception)
        logException(context, exception, name);
}

JSValueRef collectGarbage(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[],
                          JSValueRef*) {
    JSSynchronousGarbageCollectForDebugging(context);
    malloc_trim(0);
    return JSGetMemoryUsageStatistics(context);
}

}  // namespace

void runScript(JSGlobalContextRef context, const std::string& source, const char* name) {
    const JSStringHandle url = makeString(name);
    (void)evaluate(context, source.c_str(), name, url.get());
}

void runBrowserExtensions(JSGlobalContextRef context, JSObjectRef glass, JSObjectRef lets) {
    static const std::string s_function =
        std::string("((glass, lets) => { 'use strict';\n").append(s_browserExtensions).append("})");
    callFunction(context, s_function.c_str(), {glass, lets ? lets : JSValueMakeNull(context)},
                 "browser extensions");
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

void listenForDocumentEnd(JSGlobalContextRef context, JSObjectRef reached) {
    callFunction(context,
                 "(reached => addEventListener('DOMContentLoaded', () => reached("
                 "window === window.top), { capture: true, once: true }))",
                 {reached}, "document end");
}

void defineCollectGarbage(JSGlobalContextRef context) {
    const JSStringHandle name = makeString("__collectGarbage");
    const JSObjectRef function = JSObjectMakeFunctionWithCallback(context, name.get(), collectGarbage);
    JSObjectSetProperty(context, JSContextGetGlobalObject(context), name.get(), function,
                        kJSPropertyAttributeDontEnum, nullptr);
}

}  // namespace WebProcess
