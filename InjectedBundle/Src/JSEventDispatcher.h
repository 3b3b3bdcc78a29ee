// Handlers and listeners of one event-firing object, and their calls.
//
// Lifetime: from its first stored handler to the last removal the object is pinned (protected), because finalisers
// run lazily: an unpinned object can be dead and still hear the middleware. An object without handlers touches no
// JavaScript. Handlers are dropped when their page is replaced, so that a handler, its page and the native object
// do not keep each other alive for ever.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "InjectedBundle/Src/JSHandles.h"

namespace OipfJavaScript {

class JSEventDispatcher {
   public:
    JSEventDispatcher(JSContextRef context, JSObjectRef thisObject, const std::string& name);
    JSEventDispatcher(const JSEventDispatcher&) = delete;
    JSEventDispatcher& operator=(const JSEventDispatcher&) = delete;
    // Runs in finalisers: calls nothing of the engine.
    virtual ~JSEventDispatcher();

    // Sets the one handler of an event; a value that is no function clears it, and the result is false.
    bool JSAddEventListenerDOM1(const char* eventName, JSValueRef value);
    // The handler as the page gave it, or null.
    [[nodiscard]] JSValueRef JSGetCallbackFunction(const char* eventName) const;
    // A function is stored at most once per event name.
    bool JSAddEventListenerDOM2(const char* eventName, JSValueRef value);
    // Removes the function from every event of the object: the name takes no part in the comparison.
    bool JSRemoveEventListener(const char* eventName, JSValueRef value);
    bool JSRemoveAllEventListeners(const char* eventName);
    // Calls the handler with the values by position, then each listener with an Event that carries them by name.
    bool JSDispatchEvent(const char* eventName, const std::vector<const char*>& paramNames,
                         const std::vector<JSValueRef>& paramValues);

    [[nodiscard]] JSContextRef Context() const { return m_context; }
    [[nodiscard]] bool HasHandlers() const { return !m_dom1.empty() || !m_dom2.empty(); }
    [[nodiscard]] bool HasHandlersFor(const std::string& eventName) const {
        return m_dom1.contains(eventName) || m_dom2.contains(eventName);
    }

    // While nothing is stored, the context of the earlier caller may be gone: take this caller's.
    void Revisit(JSContextRef context) {
        if (!HasHandlers())
            m_context = JSContextGetGlobalContext(context);
    }

    // Drops the handlers of every pinned object whose global object the predicate names.
    static void DropHandlers(const std::function<bool(JSGlobalContextRef)>& belongs);

   private:
    struct HandlerFunction {
        ProtectedValue value;
        JSObjectRef function;
    };

    [[nodiscard]] JSObjectRef ToFunction(const char* eventName, JSValueRef value) const;
    bool CallListeners(const char* eventName, const std::vector<JSObjectRef>& listeners,
                       const std::vector<const char*>& paramNames, const std::vector<JSValueRef>& paramValues,
                       JSObjectRef handler);
    void Pin();
    void UnpinIfIdle();
    void Drop();

    JSGlobalContextRef m_context;
    JSObjectRef m_thisObject;
    std::string m_name;
    ProtectedValue m_pin;
    std::map<std::string, HandlerFunction, std::less<>> m_dom1;
    std::multimap<std::string, HandlerFunction, std::less<>> m_dom2;
};

}  // namespace OipfJavaScript
