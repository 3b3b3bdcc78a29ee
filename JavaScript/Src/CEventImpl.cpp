#include "JavaScript/Src/CEventImpl.h"

#include <chrono>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/Src/RuntimeObjects.h"
#include "Platform/Inc/JSCPrivate.h"

namespace OipfJavaScript {

namespace {

int64_t MillisecondsSince1970() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

JSStringRef TargetKey() {
    static const JSStringHandle s_target("target");
    return s_target.Get();
}

}  // namespace

CEventImpl::CEventImpl(const char* type) : m_type(type), m_timeStamp(MillisecondsSince1970()) {}

// The target is kept by the JavaScript object, where the collector sees it: an event that a page keeps must
// neither lose its target nor keep it alive once both are garbage.
JSObjectRef MakeEvent(JSContextRef context, const char* type, JSObjectRef target) {
    JSObjectRef event = jiEvent::CreateObject(context, MakeBinding<jiEvent>(type).release(), nullptr);
    if (event == nullptr || !JSObjectSetPrivateProperty(context, event, TargetKey(), target))
        return nullptr;
    return event;
}

JSValueRef CEventImpl::getCustomTarget(JSContextRef context, JSObjectRef event) const {
    return JSObjectGetPrivateProperty(context, event, TargetKey());
}

JSValueRef CEventImpl::getCustomCurrentTarget(JSContextRef context, JSObjectRef event) const {
    return getCustomTarget(context, event);
}

JSValueRef CEventImpl::getCustomSrcElement(JSContextRef context, JSObjectRef event) const {
    return getCustomTarget(context, event);
}

void CEventImpl::PreventDefault() {
    HBBTV_LOG_ENTRY();
}
void CEventImpl::InitEvent() {
    HBBTV_LOG_ENTRY();
}
void CEventImpl::StopPropagation() {
    HBBTV_LOG_ENTRY();
}
void CEventImpl::StopImmediatePropagation() {
    HBBTV_LOG_ENTRY();
}

}  // namespace OipfJavaScript
