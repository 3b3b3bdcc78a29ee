#include "InjectedBundle/Src/JSEventDispatcher.h"

#include <algorithm>
#include <set>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/gen/js/jiEvent.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "JavaScript/Src/CEventImpl.h"

namespace OipfJavaScript {

namespace {

// The dispatchers that hold handlers, in all pages of the process.
std::set<JSEventDispatcher*>& Pinned() {
    static auto* const pinned = new std::set<JSEventDispatcher*>();
    return *pinned;
}

std::string Join(const std::vector<const char*>& names) {
    std::string joined;
    for (const char* name : names) {
        if (!joined.empty())
            joined += ", ";
        joined += name != nullptr ? name : "(null)";
    }
    return joined;
}

// Defines a read-only property anew. One that exists would silently keep the value of the event before.
bool SetReadOnly(JSContextRef context, JSObjectRef object, JSStringRef name, JSValueRef value, bool anew) {
    JSValueRef exception = nullptr;
    if (anew)
        JSObjectDeleteProperty(context, object, name, &exception);
    if (exception == nullptr)
        JSObjectSetProperty(context, object, name, value, kJSPropertyAttributeReadOnly, &exception);
    return exception == nullptr;
}

}  // namespace

JSEventDispatcher::JSEventDispatcher(JSContextRef context, JSObjectRef thisObject, const std::string& name)
    : m_context(JSContextGetGlobalContext(context)), m_thisObject(thisObject), m_name(name) {}

JSEventDispatcher::~JSEventDispatcher() {
    HBBTV_LOG_INFO("~JSEventDispatcher %lu", static_cast<unsigned long>(m_dom2.size()));
    // A pinned object is finalised only when the whole engine goes away: its values went with it.
    Pinned().erase(this);
    m_pin.Abandon();
    for (auto& [name, handler] : m_dom1)
        handler.value.Abandon();
    for (auto& [name, handler] : m_dom2)
        handler.value.Abandon();
}

void JSEventDispatcher::Pin() {
    if (m_pin)
        return;
    m_pin = ProtectedValue(m_context, m_thisObject);
    Pinned().insert(this);
}

void JSEventDispatcher::UnpinIfIdle() {
    if (HasHandlers())
        return;
    Pinned().erase(this);
    m_pin.Release();
}

void JSEventDispatcher::Drop() {
    m_dom1.clear();
    m_dom2.clear();
    UnpinIfIdle();
}

void JSEventDispatcher::DropHandlers(const std::function<bool(JSGlobalContextRef)>& belongs) {
    std::vector<JSEventDispatcher*> leaving;
    for (JSEventDispatcher* dispatcher : Pinned()) {
        if (belongs(dispatcher->m_context))
            leaving.push_back(dispatcher);
    }
    for (JSEventDispatcher* dispatcher : leaving)
        dispatcher->Drop();
}

JSObjectRef JSEventDispatcher::ToFunction(const char* eventName, JSValueRef value) const {
    if (value == nullptr || !JSValueIsObject(m_context, value))
        return nullptr;
    JSValueRef exception = nullptr;
    JSObjectRef object = JSValueToObject(m_context, value, &exception);
    if (object == nullptr || exception != nullptr || !JSObjectIsFunction(m_context, object)) {
        HBBTV_LOG_DEBUG("%s(%s) - value is not a function", m_name.c_str(), eventName);
        return nullptr;
    }
    return object;
}

bool JSEventDispatcher::JSAddEventListenerDOM1(const char* eventName, JSValueRef value) {
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s - event name is NULL", m_name.c_str());
        return false;
    }
    JSObjectRef function = ToFunction(eventName, value);
    if (function == nullptr) {
        m_dom1.erase(eventName);
        UnpinIfIdle();
        return false;
    }
    m_dom1.insert_or_assign(eventName, HandlerFunction{ProtectedValue(m_context, value), function});
    Pin();
    return true;
}

JSValueRef JSEventDispatcher::JSGetCallbackFunction(const char* eventName) const {
    const auto found = eventName != nullptr ? m_dom1.find(std::string_view(eventName)) : m_dom1.end();
    return found != m_dom1.end() ? found->second.value.Get() : JSValueMakeNull(m_context);
}

bool JSEventDispatcher::JSAddEventListenerDOM2(const char* eventName, JSValueRef value) {
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s - event name is NULL", m_name.c_str());
        return false;
    }
    JSObjectRef function = ToFunction(eventName, value);
    if (function == nullptr) {
        HBBTV_LOG_ERROR("%s(%s) - listener is not a function", m_name.c_str(), eventName);
        return false;
    }
    const auto [first, last] = m_dom2.equal_range(std::string_view(eventName));
    const bool known =
        std::any_of(first, last, [function](const auto& entry) { return entry.second.function == function; });
    if (known) {
        HBBTV_LOG_INFO("%s(%s) - listener is already registered", m_name.c_str(), eventName);
        return true;
    }
    m_dom2.emplace(eventName, HandlerFunction{ProtectedValue(m_context, value), function});
    Pin();
    HBBTV_LOG_INFO("%s(%s) - %lu listeners", m_name.c_str(), eventName, static_cast<unsigned long>(m_dom2.size()));
    return true;
}

bool JSEventDispatcher::JSRemoveEventListener(const char* eventName, JSValueRef value) {
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s - event name is NULL", m_name.c_str());
        return false;
    }
    const size_t removed =
        std::erase_if(m_dom2, [value](const auto& entry) { return entry.second.value.Get() == value; });
    HBBTV_LOG_INFO("%s(%s) - %lu listeners removed, %lu remain", m_name.c_str(), eventName,
                   static_cast<unsigned long>(removed), static_cast<unsigned long>(m_dom2.size()));
    UnpinIfIdle();
    return true;
}

bool JSEventDispatcher::JSRemoveAllEventListeners(const char* eventName) {
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s - event name is NULL", m_name.c_str());
        return false;
    }
    m_dom1.erase(eventName);
    const size_t removed = m_dom2.erase(eventName);
    HBBTV_LOG_INFO("%s(%s) - %lu listeners removed, %lu remain", m_name.c_str(), eventName,
                   static_cast<unsigned long>(removed), static_cast<unsigned long>(m_dom2.size()));
    UnpinIfIdle();
    return true;
}

bool JSEventDispatcher::JSDispatchEvent(const char* eventName, const std::vector<const char*>& paramNames,
                                        const std::vector<JSValueRef>& paramValues) {
    HBBTV_LOG_INFO("%s(%s) - (%s) %lu values", m_name.c_str(), eventName != nullptr ? eventName : "(null)",
                   Join(paramNames).c_str(), static_cast<unsigned long>(paramValues.size()));
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s(%s) - event name is NULL", m_name.c_str(), "(null)");
        return false;
    }
    if (paramNames.size() != paramValues.size()) {
        HBBTV_LOG_ERROR("%s(%s) - paramNames.size() is not the same as paramValues.size()", m_name.c_str(), eventName);
        return false;
    }

    const auto handlerEntry = m_dom1.find(std::string_view(eventName));
    const auto [first, last] = m_dom2.equal_range(std::string_view(eventName));
    if (handlerEntry == m_dom1.end() && first == last) {
        HBBTV_LOG_INFO("%s(%s) - No matching DOM1 CBs or DOM2 listeners registered.", m_name.c_str(), eventName);
        return true;
    }
    JSObjectRef handler = handlerEntry != m_dom1.end() ? handlerEntry->second.function : nullptr;
    std::vector<JSObjectRef> listeners;
    for (auto at = first; at != last; ++at)
        listeners.push_back(at->second.function);
    return CallListeners(eventName, listeners, paramNames, paramValues, handler);
}

bool JSEventDispatcher::CallListeners(const char* eventName, const std::vector<JSObjectRef>& listeners,
                                      const std::vector<const char*>& paramNames,
                                      const std::vector<JSValueRef>& paramValues, JSObjectRef handler) {
    // Everything that is used from here on is a copy: a handler may add and remove handlers, and drop this object.
    const JSGlobalContextRef context = m_context;
    const JSObjectRef target = m_thisObject;
    const std::string name = m_name;

    // One array keeps alive what the calls need: protecting each value by itself costs more than making an event.
    std::vector<JSValueRef> values(listeners.begin(), listeners.end());
    values.insert(values.end(), paramValues.begin(), paramValues.end());
    values.push_back(target);
    if (handler != nullptr)
        values.push_back(handler);
    JSObjectRef kept = JSObjectMakeArray(context, values.size(), values.data(), nullptr);
    if (kept == nullptr) {
        HBBTV_LOG_ERROR("%s(%s) - Fail to create event object!", name.c_str(), eventName);
        return false;
    }
    const ProtectedValue alive(context, kept);

    struct Pending {
        JSObjectRef listener;
        JSObjectRef event;
    };
    std::vector<Pending> pending;
    pending.reserve(listeners.size());
    static const JSStringHandle s_event("event");
    for (const JSObjectRef listener : listeners) {
        JSObjectRef event = CEventImpl::MakeEvent(context, eventName, target);
        if (event == nullptr) {
            HBBTV_LOG_ERROR("%s(%s) - Fail to create event object!", name.c_str(), eventName);
            return false;
        }
        JSObjectSetPropertyAtIndex(context, kept, static_cast<unsigned>(values.size() + pending.size()), event,
                                   nullptr);
        pending.push_back({listener, event});
    }
    // All of them are set before the first call, so that what a listener finds on the firing object is what the last
    // of these settings left there; only that one is made.
    if (!pending.empty() && !SetReadOnly(context, target, s_event.Get(), pending.back().event, true)) {
        HBBTV_LOG_ERROR("%s(%s) - Fail to set event object on this object!", name.c_str(), eventName);
        return false;
    }
    for (size_t i = 0; i < paramNames.size() && !pending.empty(); ++i) {
        const JSStringHandle property(paramNames[i]);
        for (const Pending& each : pending) {
            if (!SetReadOnly(context, each.event, property.Get(), paramValues[i], false)) {
                HBBTV_LOG_ERROR("%s(%s) - failed to set event property %s.", name.c_str(), eventName, paramNames[i]);
                return false;
            }
        }
        if (!SetReadOnly(context, target, property.Get(), paramValues[i], true)) {
            HBBTV_LOG_ERROR("%s(%s) - failed to set event property %s on this object.", name.c_str(), eventName,
                            paramNames[i]);
            return false;
        }
    }

    bool everyListenerReturned = true;
    if (handler != nullptr) {
        JSValueRef exception = nullptr;
        JSObjectCallAsFunction(context, handler, target, paramValues.size(), paramValues.data(), &exception);
        if (exception != nullptr) {
            HBBTV_LOG_ERROR("%s(%s) - failed to call DOM level 1 call-back function.", name.c_str(), eventName);
        }
    }
    std::sort(pending.begin(), pending.end(),
              [](const Pending& a, const Pending& b) { return std::less<>()(a.listener, b.listener); });
    for (const Pending& each : pending) {
        JSValueRef exception = nullptr;
        const JSValueRef event = each.event;
        JSObjectCallAsFunction(context, each.listener, target, 1, &event, &exception);
        if (exception != nullptr) {
            HBBTV_LOG_ERROR("%s(%s) - failed to call DOM level 2 event listener (%p).", name.c_str(), eventName,
                            static_cast<void*>(each.listener));
            everyListenerReturned = false;
        }
    }
    return everyListenerReturned;
}

}  // namespace OipfJavaScript
