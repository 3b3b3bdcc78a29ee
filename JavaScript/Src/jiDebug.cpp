#include "JavaScript/Src/jiDebug.h"

#include <string>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"
#ifdef HBBTV_DEBUG_SOCKET
#include "JavaScript/Src/DebugSocket.h"
#endif

namespace OipfJavaScript {

void jiDebug::Register(JSContextRef context) {
    const JSStringHandle name("debug");
    JSObjectRef function = JSObjectMakeFunctionWithCallback(context, name.Get(), &t_DebugMessage);
    JSObjectSetProperty(context, JSContextGetGlobalObject(context), name.Get(), function,
                        kJSPropertyAttributeReadOnly, nullptr);
}

JSValueRef jiDebug::t_DebugMessage(JSContextRef context, JSObjectRef, JSObjectRef, size_t count,
                                   const JSValueRef arguments[], JSValueRef* /*exception*/) {
    // A message that cannot be made a text is an empty one: a page must not fail because of its own debug
    // output.
    std::string message;
    if (count > 0)
        (void)ToUtf8(context, arguments[0], message, nullptr);
#ifdef HBBTV_DEBUG_SOCKET
    DebugSocket& socket = DebugSocket::GetInstance();
    socket.Start();
    socket.Write(message);
#endif
    HBBTV_LOG_INFO("OIPF window.debug: %s", message.c_str());
    return JSValueMakeNull(context);
}

}  // namespace OipfJavaScript
