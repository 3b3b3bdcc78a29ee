// The window's debug() function: a line to the log, and to whoever is connected to the debug socket if it is
// built in.
#pragma once

#include <JavaScriptCore/JavaScript.h>

namespace OipfJavaScript {

class jiDebug {
 public:
    jiDebug() = delete;

    static void Register(JSContextRef context);
    static JSValueRef t_DebugMessage(JSContextRef context, JSObjectRef function, JSObjectRef thisObject,
                                     size_t count, const JSValueRef arguments[], JSValueRef* exception);
};

}  // namespace OipfJavaScript
