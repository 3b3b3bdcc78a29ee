#include "InjectedBundle/Src/BindingCall.h"

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/RuntimeObjects.h"

namespace OipfJavaScript::Call {

bool Throws(const char* where, JSContextRef context, const CallStatus& status, JSValueRef* exception) {
    if (status.m_errorMessage.empty())
        return false;
    // Copies: making the exception object allocates, and may so run finalisers.
    const std::string name = status.m_errorName;
    const std::string message = status.m_errorMessage;
    Throw(where, context, name, message, exception);
    return true;
}

JSValueRef Missing(JSContextRef context, const CallStatus& status) {
    return status.m_status == CallStatus::kUndefined ? JSValueMakeUndefined(context)
                                                     : JSValueMakeNull(context);
}

JSValueRef RefuseArguments(const char* id, const char* where, const CallArguments& call) {
    HBBTV_LOG_WARNING("%s::%s Argument count (%lu) or the argument types are bad", id, where,
                      static_cast<unsigned long>(call.count));
    for (size_t i = 0; i < call.count; ++i)
        HBBTV_LOG_WARNING("%s::%s Argument[%lu] is %s", id, where, static_cast<unsigned long>(i),
                          TypeName(call.context, call.values[i]));
    Throw(where, call.context, "SecurityError", "Argument count or the argument types are bad",
          call.exception);
    return JSValueMakeNull(call.context);
}

void LogIgnored(const char* where, size_t index) {
    HBBTV_LOG_INFO("%s Argument[%lu] is accepted and not used", where, static_cast<unsigned long>(index));
}

void ThrowWrongValueType(const char* where, JSContextRef context, const char* typeName,
                         JSValueRef* exception) {
    Throw(where, context, "TypeError", std::string("Value is not ") + typeName, exception);
}

}  // namespace OipfJavaScript::Call

namespace OipfJavaScript {

void RegisterInstance(JSContextRef context, const char* id, JSObjectRef instance) {
    JSObjectSetProperty(context, JSContextGetGlobalObject(context), JSStringHandle(id).Get(), instance,
                        kJSPropertyAttributeNone, nullptr);
}

}  // namespace OipfJavaScript
