#include "JavaScript/Src/COipfCapabilitiesImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/FrameBuiltIns.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"

namespace OipfJavaScript {

namespace {

constexpr const char* kTag = "CAPABILITIES";

// The name of a thrown value: a script's own errors have one, but a page can replace what the script calls
// and throw anything.
std::string NameOf(JSContextRef context, JSValueRef thrown) {
    std::string name = "Error";
    if (!JSValueIsObject(context, thrown))
        return name;
    JSValueRef failure = nullptr;
    const JSValueRef value = JSObjectGetProperty(context, JSValueToObject(context, thrown, nullptr),
                                                 JSStringHandle("name").Get(), &failure);
    if (failure == nullptr && JSValueIsString(context, value))
        (void)ToUtf8(context, value, name, nullptr);
    return name;
}

}  // namespace

JSValueRef COipfCapabilitiesImpl::GetXmlCapabilities(JSContextRef context) {
    HBBTV_LOG_INFO("[%s:%d] %s", kTag, __LINE__, __func__);
    // The text goes in as it is: escaping it is the receiver's part, and receivers do it.
    const std::string script = "return \"" + CDAEBrowserAPIWK::GetInstance()->GetXmlCapabilities() + "\";";
    JSValueRef thrown = nullptr;
    JSValueRef text = nullptr;
    const JSObjectRef read = JSObjectMakeFunction(context, nullptr, 0, nullptr,
                                                  JSStringHandle(script.c_str()).Get(), nullptr, 1, &thrown);
    if (read != nullptr && thrown == nullptr)
        text = JSObjectCallAsFunction(context, read, nullptr, 0, nullptr, &thrown);
    if (text != nullptr && thrown == nullptr)
        return FrameBuiltIns::ParseXml(context, text);

    std::string reason;
    if (!ToUtf8(context, thrown, reason, nullptr) || reason.empty())
        reason = "the capabilities cannot be read";
    HBBTV_LOG_ERROR("[%s:%d] %s failed \"%s\"", kTag, __LINE__, __func__, reason.c_str());
    Fail(NameOf(context, thrown).c_str(), reason.c_str());
    return nullptr;
}

bool COipfCapabilitiesImpl::HasCapability(const std::string& profileName) const {
    HBBTV_LOG_INFO("[%s:%d] %s(%s)", kTag, __LINE__, __func__, profileName.c_str());
    return CDAEBrowserAPIWK::GetInstance()->HasCapability(profileName);
}

}  // namespace OipfJavaScript
