// A script context for measurements: one context, loops compiled once and called often.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <initializer_list>
#include <iterator>
#include <string>

#include "InjectedBundle/Src/FrameBuiltIns.h"
#include "InjectedBundle/Src/JSHandles.h"

namespace Benchmarks {

class Script {
 public:
    // Handlers are taken from frames alone.
    Script() : m_context(JSGlobalContextCreate(nullptr)) {
        OipfJavaScript::FrameBuiltIns::Capture(m_context);
    }
    Script(const Script&) = delete;
    Script& operator=(const Script&) = delete;
    ~Script() {
        OipfJavaScript::FrameBuiltIns::Forget(m_context);
        JSGlobalContextRelease(m_context);
    }

    [[nodiscard]] JSGlobalContextRef Context() const { return m_context; }

    // The value of an expression that is a function. It stays alive with the context.
    [[nodiscard]] JSObjectRef Function(const std::string& expression) {
        const OipfJavaScript::JSStringHandle source(("(" + expression + ")").c_str());
        const JSValueRef value = JSEvaluateScript(m_context, source.Get(), nullptr, nullptr, 1, nullptr);
        JSObjectRef function = JSValueToObject(m_context, value, nullptr);
        Keep(function);
        return function;
    }

    // Null when it throws.
    JSValueRef Call(JSObjectRef function, std::initializer_list<JSValueRef> arguments = {}) const {
        return JSObjectCallAsFunction(m_context, function, nullptr, arguments.size(), std::data(arguments),
                                      nullptr);
    }
    [[nodiscard]] bool IsTrue(JSValueRef value) const {
        return value != nullptr && JSValueToBoolean(m_context, value);
    }

    // Makes the value reachable from the global object.
    void Keep(JSValueRef value) {
        const OipfJavaScript::JSStringHandle name(("kept" + std::to_string(m_kept++)).c_str());
        JSObjectSetProperty(m_context, JSContextGetGlobalObject(m_context), name.Get(), value, 0, nullptr);
    }

 private:
    JSGlobalContextRef m_context;
    int m_kept = 0;
};

}  // namespace Benchmarks
