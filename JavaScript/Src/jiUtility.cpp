#include "JavaScript/Src/jiUtility.h"

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <utility>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/Src/FrameBuiltIns.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"
#include "InjectedBundle/gen/js/jiException.h"
#include "JavaScript/Src/CExceptionImpl.h"

namespace OipfJavaScript {

namespace {

// The text that a script gives; empty when it throws.
std::string Evaluate(JSContextRef context, const char* script) {
    if (context == nullptr)
        return {};
    JSValueRef exception = nullptr;
    const JSValueRef result =
        JSEvaluateScript(context, JSStringHandle(script).Get(), nullptr, nullptr, 1, &exception);
    std::string text;
    if (exception != nullptr || result == nullptr || !ToUtf8(context, result, text, nullptr))
        return {};
    return text;
}

}  // namespace

std::string jiUtility::JSStringToString(JSStringRef string) {
    return ToUtf8(string);
}

bool jiUtility::JSStringToLong(JSStringRef string, long& value) {
    const std::string text = ToUtf8(string);
    // strtoul would accept blanks and signs before the digits, and stop at a NUL.
    if (text.find_first_not_of("0123456789") != std::string::npos)
        return false;
    errno = 0;
    const unsigned long number = std::strtoul(text.c_str(), nullptr, 10);
    if (errno == ERANGE)
        return false;
    value = static_cast<long>(number);
    return true;
}

std::string jiUtility::JSValueToString(JSContextRef context, JSValueRef value, JSValueRef* exception) {
    std::string text;
    (void)ToUtf8(context, value, text, exception);
    return text;
}

const char* jiUtility::JSValueQueryType(JSContextRef context, JSValueRef value) {
    return TypeName(context, value);
}

std::string jiUtility::GetDocumentLocation(JSContextRef context) {
    std::string directory = Evaluate(context, "document.location.origin + document.location.pathname");
    const size_t slash = directory.rfind('/');
    directory.resize(slash == std::string::npos ? 0 : slash + 1);
    return directory;
}

std::string jiUtility::GetDocumentUrl(JSContextRef context) {
    return Evaluate(context, "document.location.href");
}

void jiUtility::MakeAbsolutePath(JSContextRef context, std::string& path) {
    if (path.find("://") != std::string::npos) {
        HBBTV_LOG_INFO("the path \"%s\" is already absolute path", path.c_str());
        return;
    }
    if (std::string url = FrameBuiltIns::CompleteUrl(context, path); !url.empty()) {
        path = std::move(url);
        HBBTV_LOG_INFO("absolute path is : %s", path.c_str());
        return;
    }
    std::string directory = GetDocumentLocation(context);
    if (!path.starts_with('/')) {
        if (!directory.ends_with('/'))
            directory += '/';
    } else {
        // A path from the root is completed by the origin alone: scheme, "://" and host.
        const size_t host = directory.find("://");
        const size_t end = host == std::string::npos ? std::string::npos : directory.find('/', host + 3);
        directory.resize(end == std::string::npos ? 0 : end);
    }
    path.insert(0, directory);
    HBBTV_LOG_INFO("absolute path is : %s", path.c_str());
}

JSObjectRef jiUtility::JSObjectMakeException(const char* where, JSContextRef context, const std::string& name,
                                             const std::string& message, JSValueRef* exception) {
    HBBTV_LOG_WARNING("%s() - throwing exception (name: %s, desc: %s)", where, name.c_str(), message.c_str());
    return jiException::CreateObject(context, MakeBinding<jiException>(name, message).release(), exception);
}

std::string jiUtility::Ucs2ToUtf8(const char16_t* text, size_t length) {
    static_assert(sizeof(JSChar) == sizeof(char16_t));
    const auto string =
        JSStringHandle::Adopt(JSStringCreateWithCharacters(reinterpret_cast<const JSChar*>(text), length));
    return ToUtf8(string.Get());
}

std::u16string jiUtility::Utf8ToUcs2(const char* text, size_t length) {
    return ToUtf16({text, length});
}

}  // namespace OipfJavaScript
