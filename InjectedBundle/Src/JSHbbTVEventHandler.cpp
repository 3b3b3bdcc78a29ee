#include "InjectedBundle/Src/JSHbbTVEventHandler.h"

#include <array>
#include <cstdarg>
#include <span>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/JSEventDispatcher.h"

namespace OipfJavaScript {

JSHbbTVEventHandler::JSHbbTVEventHandler(const char* name) : m_name(name) {}

JSHbbTVEventHandler::~JSHbbTVEventHandler() = default;

void JSHbbTVEventHandler::m_CreateJSED(JSContextRef context, JSObjectRef thisObject) {
    if (!m_dispatcher)
        m_dispatcher = std::make_unique<JSEventDispatcher>(context, thisObject, m_name);
    m_dispatcher->SetCaller(context);
}

bool JSHbbTVEventHandler::t_AddCallbackFunction(JSContextRef context, JSObjectRef thisObject,
                                                const char* eventName, JSValueRef value) {
    m_CreateJSED(context, thisObject);
    return m_dispatcher->JSAddEventListenerDOM1(eventName, value);
}

JSValueRef JSHbbTVEventHandler::t_GetCallbackFunction(JSContextRef context, JSObjectRef thisObject,
                                                      const char* eventName) {
    m_CreateJSED(context, thisObject);
    return m_dispatcher->JSGetCallbackFunction(eventName);
}

bool JSHbbTVEventHandler::t_AddEventListener(JSContextRef context, JSObjectRef thisObject,
                                             const char* eventName, JSValueRef value, bool /*useCapture*/) {
    m_CreateJSED(context, thisObject);
    return m_dispatcher->JSAddEventListenerDOM2(eventName, value);
}

bool JSHbbTVEventHandler::t_RemoveEventListener(JSContextRef context, JSObjectRef thisObject,
                                                const char* eventName, JSValueRef value,
                                                bool /*useCapture*/) {
    m_CreateJSED(context, thisObject);
    return m_dispatcher->JSRemoveEventListener(eventName, value);
}

bool JSHbbTVEventHandler::t_RemoveAllEventListeners(JSContextRef context, JSObjectRef thisObject,
                                                    const char* eventName) {
    m_CreateJSED(context, thisObject);
    return m_dispatcher->JSRemoveAllEventListeners(eventName);
}

bool JSHbbTVEventHandler::DispatchEvent(const char* eventName, ...) {
    if (!m_dispatcher) {
        HBBTV_LOG_INFO("%s No event registered, nothing to call", m_name.c_str());
        return true;
    }
    // On the stack, where the collector finds the values.
    std::array<const char*, kMostArguments> names;
    std::array<JSValueRef, kMostArguments> values;
    size_t count = 0;
    va_list arguments;
    va_start(arguments, eventName);
    while (count < kMostArguments) {
        const char* name = va_arg(arguments, const char*);
        if (name == nullptr)
            break;
        const JSValueRef value = va_arg(arguments, JSValueRef);
        if (value == nullptr)
            break;
        names[count] = name;
        values[count++] = value;
    }
    va_end(arguments);
    return m_dispatcher->JSDispatchEvent(eventName, std::span(names).first(count),
                                         std::span(values).first(count));
}

JSContextRef JSHbbTVEventHandler::ContextFor(const char* eventName) const {
    return m_dispatcher ? m_dispatcher->ContextFor(eventName) : nullptr;
}

}  // namespace OipfJavaScript
