// Handlers and listeners of one event-firing object, and their calls.
//
// Lifetime: every stored handler pins the object (protects it), because finalisers run lazily: an unpinned
// object can be dead and still hear the middleware. An object without handlers touches no JavaScript. A
// handler belongs to the frame whose script made it, and is dropped when that frame goes, so that a handler,
// its page and the native object do not keep each other alive for ever.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <functional>
#include <map>
#include <memory>
#include <span>
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

    // Who calls next: each of the operations below is called on behalf of a script.
    void SetCaller(JSContextRef context) { m_caller = JSContextGetGlobalContext(context); }

    // Sets the one handler of an event; a value that is no function clears it, and the result is false.
    bool JSAddEventListenerDOM1(const char* eventName, JSValueRef value);
    // The handler as the page gave it, or null.
    [[nodiscard]] JSValueRef JSGetCallbackFunction(const char* eventName) const;
    // A function is stored at most once per event name.
    bool JSAddEventListenerDOM2(const char* eventName, JSValueRef value);
    // Removes the function from every event of the object: the name takes no part in the comparison.
    bool JSRemoveEventListener(const char* eventName, JSValueRef value);
    bool JSRemoveAllEventListeners(const char* eventName);
    // Calls the handler with the values by position, then each listener with an Event that carries them by
    // name. The values are the caller's to keep, where the collector sees them: on the stack.
    bool JSDispatchEvent(const char* eventName, std::span<const char* const> paramNames,
                         std::span<const JSValueRef> paramValues);

    // The frame of one of the event's handlers; null when there is none.
    [[nodiscard]] JSContextRef ContextFor(const std::string& eventName) const;

    // Drops the handlers of the frames that the predicate names. They are not called any more, not even by a
    // dispatch that is under way.
    static void DropHandlers(const std::function<bool(JSGlobalContextRef)>& belongs);

 private:
    struct HandlerFunction {
        ProtectedValue value;  // in the frame that made it
        ProtectedValue pin;    // of the object that it was given to
        bool isDropped = false;

        [[nodiscard]] JSGlobalContextRef Frame() const { return value.Context(); }
        // What was stored is a function: the cast changes nothing but the type.
        [[nodiscard]] JSObjectRef Function() const { return const_cast<JSObjectRef>(value.Get()); }
    };
    // A dispatch shares it, so that what it calls next outlives what was called before.
    using Handler = std::shared_ptr<HandlerFunction>;

    [[nodiscard]] bool IsFunction(const char* eventName, JSValueRef value) const;
    [[nodiscard]] Handler MakeHandler(JSValueRef value);
    bool CallHandlers(const char* eventName, const Handler& handler, std::vector<Handler> listeners,
                      std::span<const char* const> paramNames, std::span<const JSValueRef> paramValues);
    void ForgetIfIdle();

    JSGlobalContextRef m_caller;
    JSObjectRef m_thisObject;
    std::string m_name;
    std::map<std::string, Handler, std::less<>> m_dom1;
    std::multimap<std::string, Handler, std::less<>> m_dom2;
};

}  // namespace OipfJavaScript
