// Base of the implementation objects that fire events.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstddef>
#include <memory>
#include <string>

namespace OipfJavaScript {

class JSEventDispatcher;

class JSHbbTVEventHandler {
 public:
    explicit JSHbbTVEventHandler(const char* name);
    JSHbbTVEventHandler(const JSHbbTVEventHandler&) = delete;
    JSHbbTVEventHandler& operator=(const JSHbbTVEventHandler&) = delete;
    virtual ~JSHbbTVEventHandler();

    bool t_AddCallbackFunction(JSContextRef context, JSObjectRef thisObject, const char* eventName,
                               JSValueRef value);
    [[nodiscard]] JSValueRef t_GetCallbackFunction(JSContextRef context, JSObjectRef thisObject,
                                                   const char* eventName);
    // There is no propagation, so `useCapture` means nothing.
    bool t_AddEventListener(JSContextRef context, JSObjectRef thisObject, const char* eventName,
                            JSValueRef value, bool useCapture);
    bool t_RemoveEventListener(JSContextRef context, JSObjectRef thisObject, const char* eventName,
                               JSValueRef value, bool useCapture);
    bool t_RemoveAllEventListeners(JSContextRef context, JSObjectRef thisObject, const char* eventName);

    // Fires an event. The arguments are pairs of a name (const char*) and a value (JSValueRef), ended by a
    // null pair; what goes beyond kMostArguments is left out.
    bool DispatchEvent(const char* eventName, ...);

    // The context to make event arguments in, while the page has a handler for the event; otherwise null: an
    // object nobody listens to touches no JavaScript.
    [[nodiscard]] JSContextRef ContextFor(const char* eventName) const;

 private:
    static constexpr size_t kMostArguments = 8;

    void m_CreateJSED(JSContextRef context, JSObjectRef thisObject);

    std::string m_name;
    std::unique_ptr<JSEventDispatcher> m_dispatcher;
};

}  // namespace OipfJavaScript
