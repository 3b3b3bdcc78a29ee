#include "JavaScript/Src/jiTestInterface.h"

#include <string>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"
#include "Platform/Inc/JSCPrivate.h"

namespace OipfJavaScript {

namespace {

void PutOnWindow(JSContextRef context, const char* name, JSObjectCallAsFunctionCallback callback) {
    const JSStringHandle property(name);
    JSObjectSetProperty(context, JSContextGetGlobalObject(context), property.Get(),
                        JSObjectMakeFunctionWithCallback(context, property.Get(), callback),
                        kJSPropertyAttributeReadOnly, nullptr);
}

JSValueRef Alert(JSContextRef context, JSObjectRef, JSObjectRef, size_t count, const JSValueRef arguments[],
                 JSValueRef*) {
    std::string text;
    if (count > 0)
        (void)ToUtf8(context, arguments[0], text, nullptr);
    HBBTV_LOG_INFO("ALERT: %s", text.c_str());
    return JSValueMakeNull(context);
}

JSValueRef ForceGC(JSContextRef context, JSObjectRef, JSObjectRef, size_t, const JSValueRef[], JSValueRef*) {
    JSSynchronousGarbageCollectForDebugging(context);
    return JSValueMakeNull(context);
}

JSValueRef RegisterAllEmbeddedObjects(JSContextRef context, JSObjectRef, JSObjectRef, size_t,
                                      const JSValueRef[], JSValueRef*) {
    return JSValueMakeNull(context);
}

}  // namespace

void jiTestInterface::RegisterAlert(JSContextRef context) {
    PutOnWindow(context, "alert", &Alert);
}

void jiTestInterface::RegisterForceGC(JSContextRef context) {
    PutOnWindow(context, "forceGC", &ForceGC);
}

void jiTestInterface::RegisterRegisterAllEmbeddedObjects(JSContextRef context) {
    PutOnWindow(context, "registerAllEmbeddedObjects", &RegisterAllEmbeddedObjects);
}

}  // namespace OipfJavaScript
