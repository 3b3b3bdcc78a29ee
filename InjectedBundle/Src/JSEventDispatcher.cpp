#include "InjectedBundle/Src/JSEventDispatcher.h"

#include <algorithm>
#include <set>
#include <utility>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/Src/FrameBuiltIns.h"
#include "InjectedBundle/Src/PageRecord.h"
#include "InjectedBundle/Src/RuntimeObjects.h"
#include "Platform/Inc/JSCPrivate.h"

namespace OipfJavaScript {

namespace {

// The dispatchers that hold handlers, in all pages of the process.
std::set<JSEventDispatcher*>& Holders() {
    static auto* const holders = new std::set<JSEventDispatcher*>();
    return *holders;
}

// The frame whose script made a function. The engine calls setters in the caller's frame and methods in the
// object's, and neither need be the function's; where the engine cannot tell, the caller's has to do.
JSGlobalContextRef FrameOf(JSGlobalContextRef caller, JSObjectRef function) {
    return JSObjectGetGlobalContext != nullptr ? JSObjectGetGlobalContext(function) : caller;
}

std::string Join(std::span<const char* const> names) {
    std::string joined;
    for (const char* name : names) {
        if (!joined.empty())
            joined += ", ";
        joined += name != nullptr ? name : "(null)";
    }
    return joined;
}

bool Inherits(JSContextRef context, JSObjectRef object, JSStringRef name) {
    const JSValueRef prototype = JSObjectGetPrototype(context, object);
    return JSValueIsObject(context, prototype) &&
           JSObjectHasProperty(context, JSValueToObject(context, prototype, nullptr), name);
}

// Defines a read-only property that the object has not. What a page put under its name on a prototype would
// take the value instead, and run: then the object is without a prototype for as long as it takes.
bool SetReadOnly(JSContextRef context, JSObjectRef object, JSStringRef name, JSValueRef value,
                 bool inherits) {
    const JSValueRef prototype = inherits ? JSObjectGetPrototype(context, object) : nullptr;
    if (inherits)
        JSObjectSetPrototype(context, object, JSValueMakeNull(context));
    JSValueRef exception = nullptr;
    JSObjectSetProperty(context, object, name, value, kJSPropertyAttributeReadOnly, &exception);
    if (inherits)
        JSObjectSetPrototype(context, object, prototype);
    return exception == nullptr;
}

// The same for a property that may be there, which would silently keep the value of the event before.
bool SetReadOnlyAnew(JSContextRef context, JSObjectRef object, JSStringRef name, JSValueRef value) {
    JSValueRef exception = nullptr;
    JSObjectDeleteProperty(context, object, name, &exception);
    return exception == nullptr && SetReadOnly(context, object, name, value, Inherits(context, object, name));
}

}  // namespace

JSEventDispatcher::JSEventDispatcher(JSContextRef context, JSObjectRef thisObject, const std::string& name)
    : m_caller(JSContextGetGlobalContext(context)), m_thisObject(thisObject), m_name(name) {}

JSEventDispatcher::~JSEventDispatcher() {
    HBBTV_LOG_INFO("~JSEventDispatcher %lu", static_cast<unsigned long>(m_dom2.size()));
    // An object with handlers is finalised only when the whole engine goes away: its values went with it.
    Holders().erase(this);
    const auto abandon = [](const auto& entry) {
        entry.second->value.Abandon();
        entry.second->pin.Abandon();
    };
    std::ranges::for_each(m_dom1, abandon);
    std::ranges::for_each(m_dom2, abandon);
}

JSEventDispatcher::Handler JSEventDispatcher::MakeHandler(JSValueRef value) {
    Holders().insert(this);
    const JSGlobalContextRef frame = FrameOf(m_caller, const_cast<JSObjectRef>(value));
    return std::make_shared<HandlerFunction>(ProtectedValue(frame, value),
                                             ProtectedValue(frame, m_thisObject));
}

void JSEventDispatcher::ForgetIfIdle() {
    if (m_dom1.empty() && m_dom2.empty())
        Holders().erase(this);
}

void JSEventDispatcher::DropHandlers(const std::function<bool(JSGlobalContextRef)>& belongs) {
    const auto drop = [&](const auto& entry) {
        entry.second->isDropped = belongs(entry.second->Frame());
        return entry.second->isDropped;
    };
    // Letting go calls into the engine, which may free objects: those in the copy have handlers until their
    // turn.
    const std::set<JSEventDispatcher*> holders = Holders();
    for (JSEventDispatcher* dispatcher : holders) {
        std::erase_if(dispatcher->m_dom1, drop);
        std::erase_if(dispatcher->m_dom2, drop);
        dispatcher->ForgetIfIdle();
    }
}

bool JSEventDispatcher::IsFunction(const char* eventName, JSValueRef value) const {
    // What is an object is its own conversion to one.
    if (value == nullptr || !JSValueIsObject(m_caller, value))
        return false;
    const auto function = const_cast<JSObjectRef>(value);
    // A script runs on after its frame is gone, and nobody would take its handler away any more.
    if (JSObjectIsFunction(m_caller, function) && FrameBuiltIns::AreOf(FrameOf(m_caller, function)))
        return true;
    HBBTV_LOG_DEBUG("%s(%s) - value is not a function of a frame", m_name.c_str(), eventName);
    return false;
}

bool JSEventDispatcher::JSAddEventListenerDOM1(const char* eventName, JSValueRef value) {
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s - event name is NULL", m_name.c_str());
        return false;
    }
    if (!IsFunction(eventName, value)) {
        m_dom1.erase(eventName);
        ForgetIfIdle();
        return false;
    }
    m_dom1.insert_or_assign(eventName, MakeHandler(value));
    return true;
}

JSValueRef JSEventDispatcher::JSGetCallbackFunction(const char* eventName) const {
    const auto found = eventName != nullptr ? m_dom1.find(std::string_view(eventName)) : m_dom1.end();
    return found != m_dom1.end() ? found->second->value.Get() : JSValueMakeNull(m_caller);
}

bool JSEventDispatcher::JSAddEventListenerDOM2(const char* eventName, JSValueRef value) {
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s - event name is NULL", m_name.c_str());
        return false;
    }
    if (!IsFunction(eventName, value)) {
        HBBTV_LOG_ERROR("%s(%s) - listener is not a function", m_name.c_str(), eventName);
        return false;
    }
    const auto [first, last] = m_dom2.equal_range(std::string_view(eventName));
    if (std::any_of(first, last, [value](const auto& entry) { return entry.second->value.Get() == value; })) {
        HBBTV_LOG_INFO("%s(%s) - listener is already registered", m_name.c_str(), eventName);
        return true;
    }
    m_dom2.emplace(eventName, MakeHandler(value));
    HBBTV_LOG_INFO("%s(%s) - %lu listeners", m_name.c_str(), eventName,
                   static_cast<unsigned long>(m_dom2.size()));
    return true;
}

bool JSEventDispatcher::JSRemoveEventListener(const char* eventName, JSValueRef value) {
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s - event name is NULL", m_name.c_str());
        return false;
    }
    const size_t removed =
        std::erase_if(m_dom2, [value](const auto& entry) { return entry.second->value.Get() == value; });
    HBBTV_LOG_INFO("%s(%s) - %lu listeners removed, %lu remain", m_name.c_str(), eventName,
                   static_cast<unsigned long>(removed), static_cast<unsigned long>(m_dom2.size()));
    ForgetIfIdle();
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
    ForgetIfIdle();
    return true;
}

JSContextRef JSEventDispatcher::ContextFor(const std::string& eventName) const {
    if (const auto found = m_dom1.find(eventName); found != m_dom1.end())
        return found->second->Frame();
    const auto found = m_dom2.find(eventName);
    return found != m_dom2.end() ? found->second->Frame() : nullptr;
}

bool JSEventDispatcher::JSDispatchEvent(const char* eventName, std::span<const char* const> paramNames,
                                        std::span<const JSValueRef> paramValues) {
    HBBTV_LOG_INFO("%s(%s) - (%s) %lu values", m_name.c_str(), eventName != nullptr ? eventName : "(null)",
                   Join(paramNames).c_str(), static_cast<unsigned long>(paramValues.size()));
    if (eventName == nullptr) {
        HBBTV_LOG_ERROR("%s(%s) - event name is NULL", m_name.c_str(), "(null)");
        return false;
    }
    if (paramNames.size() != paramValues.size()) {
        HBBTV_LOG_ERROR("%s(%s) - paramNames.size() is not the same as paramValues.size()", m_name.c_str(),
                        eventName);
        return false;
    }

    const auto handler = m_dom1.find(std::string_view(eventName));
    const auto [first, last] = m_dom2.equal_range(std::string_view(eventName));
    if (handler == m_dom1.end() && first == last) {
        HBBTV_LOG_INFO("%s(%s) - No matching DOM1 CBs or DOM2 listeners registered.", m_name.c_str(),
                       eventName);
        return true;
    }
    std::vector<Handler> listeners;
    for (auto at = first; at != last; ++at)
        listeners.push_back(at->second);
    return CallHandlers(eventName, handler != m_dom1.end() ? handler->second : nullptr, std::move(listeners),
                        paramNames, paramValues);
}

bool JSEventDispatcher::CallHandlers(const char* eventName, const Handler& handlerEntry,
                                     std::vector<Handler> listeners, std::span<const char* const> paramNames,
                                     std::span<const JSValueRef> paramValues) {
    // Everything that is used from here on is a copy: a handler may add and remove handlers, and drop this
    // object. The shared handlers keep their functions, their frames and the event target.
    const Handler handler = handlerEntry;
    const JSObjectRef target = m_thisObject;
    const std::string name = m_name;
    const JSGlobalContextRef context = (handler ? handler : listeners.front())->Frame();

    // One array keeps what is made for the calls: protecting each value by itself costs more than making an
    // event. The events get places that are there from the start, because a put behind the end is the page's
    // to intercept.
    std::vector<JSValueRef> places(paramValues.begin(), paramValues.end());
    places.resize(paramValues.size() + listeners.size(), JSValueMakeUndefined(context));
    JSObjectRef kept = JSObjectMakeArray(context, places.size(), places.data(), nullptr);
    if (kept == nullptr) {
        HBBTV_LOG_ERROR("%s(%s) - Fail to create event object!", name.c_str(), eventName);
        return false;
    }
    const ProtectedValue alive(context, kept);

    struct Pending {
        Handler listener;
        JSObjectRef event;
    };
    std::vector<Pending> pending;
    pending.reserve(listeners.size());
    static const JSStringHandle s_event("event");
    for (Handler& listener : listeners) {
        JSObjectRef event = MakeEvent(listener->Frame(), eventName, target);
        if (event == nullptr) {
            HBBTV_LOG_ERROR("%s(%s) - Fail to create event object!", name.c_str(), eventName);
            return false;
        }
        JSObjectSetPropertyAtIndex(context, kept, static_cast<unsigned>(paramValues.size() + pending.size()),
                                   event, nullptr);
        pending.push_back({std::move(listener), event});
    }
    // All of them are set before the first call, so that what a listener finds on the firing object is what
    // the last of these settings left there; only that one is made.
    if (!pending.empty() && !SetReadOnlyAnew(context, target, s_event.Get(), pending.back().event)) {
        HBBTV_LOG_ERROR("%s(%s) - Fail to set event object on this object!", name.c_str(), eventName);
        return false;
    }
    for (size_t i = 0; i < paramNames.size() && !pending.empty(); ++i) {
        const JSStringHandle property(paramNames[i]);
        JSGlobalContextRef frame = nullptr;
        bool inherits = false;
        for (const Pending& each : pending) {
            // The events of one frame have one prototype.
            if (each.listener->Frame() != frame) {
                frame = each.listener->Frame();
                inherits = Inherits(frame, each.event, property.Get());
            }
            if (!SetReadOnly(frame, each.event, property.Get(), paramValues[i], inherits)) {
                HBBTV_LOG_ERROR("%s(%s) - failed to set event property %s.", name.c_str(), eventName,
                                paramNames[i]);
                return false;
            }
        }
        if (!SetReadOnlyAnew(context, target, property.Get(), paramValues[i])) {
            HBBTV_LOG_ERROR("%s(%s) - failed to set event property %s on this object.", name.c_str(),
                            eventName, paramNames[i]);
            return false;
        }
    }

    const std::string place = name + "(" + eventName + ")";
    bool everyListenerReturned = true;
    const auto call = [&](const HandlerFunction& called, bool isListener,
                          std::span<const JSValueRef> arguments) {
        HbbTVPlatform::PCRecord record;
        if (PageRecord::IsOn()) [[unlikely]]
            record.BeginLong("handler", name + (isListener ? "." : ".on") + eventName,
                             PageRecord::TextOf(called.Frame(), paramValues, paramNames));
        JSValueRef exception = nullptr;
        JSObjectCallAsFunction(called.Frame(), called.Function(), target, arguments.size(), arguments.data(),
                               &exception);
        if (exception == nullptr)
            return true;
        if (isListener)
            HBBTV_LOG_ERROR("%s(%s) - failed to call DOM level 2 event listener (%p).", name.c_str(),
                            eventName, static_cast<void*>(called.Function()));
        else
            HBBTV_LOG_ERROR("%s(%s) - failed to call DOM level 1 call-back function.", name.c_str(),
                            eventName);
        record.SetError(FrameBuiltIns::ReportException(called.Frame(), place, exception));
        return false;
    };
    if (handler)
        call(*handler, false, paramValues);
    std::ranges::sort(pending, std::less<>(), [](const Pending& each) { return each.listener->Function(); });
    for (const auto& [listener, event] : pending) {
        if (listener->isDropped)
            continue;
        const JSValueRef argument = event;
        everyListenerReturned = call(*listener, true, {&argument, 1}) && everyListenerReturned;
    }
    return everyListenerReturned;
}

}  // namespace OipfJavaScript
