#include "InjectedBundle/Src/FrameBuiltIns.h"

#include <map>

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "InjectedBundle/Src/JSHandles.h"

namespace OipfJavaScript {

namespace {

struct Captured {
    ProtectedValue reportError;
    ProtectedValue completeUrl;
    ProtectedValue parseXml;
};

std::map<JSGlobalContextRef, Captured>& Frames() {
    static auto* const frames = new std::map<JSGlobalContextRef, Captured>();
    return *frames;
}

// Older engines, and contexts without a document, have not everything: then the value is none.
ProtectedValue Take(JSGlobalContextRef frame, const char* script) {
    JSValueRef exception = nullptr;
    const JSValueRef value =
        JSEvaluateScript(frame, JSStringHandle(script).Get(), nullptr, nullptr, 1, &exception);
    return exception == nullptr && value != nullptr && JSValueIsObject(frame, value)
               ? ProtectedValue(frame, value)
               : ProtectedValue();
}

// The function's result; null without the function, and when it throws.
JSValueRef CallWith(JSGlobalContextRef frame, ProtectedValue Captured::*function, JSValueRef argument) {
    const auto found = Frames().find(frame);
    if (found == Frames().end() || !(found->second.*function))
        return nullptr;
    JSValueRef exception = nullptr;
    const JSValueRef result =
        JSObjectCallAsFunction(frame, JSValueToObject(frame, (found->second.*function).Get(), nullptr),
                               nullptr, 1, &argument, &exception);
    return exception == nullptr ? result : nullptr;
}

// The engine's own errors carry where they were made; a page may throw anything. Empty for what says nothing.
std::string TextOf(JSGlobalContextRef frame, JSValueRef value, const char* property) {
    std::string text;
    if (!JSValueIsObject(frame, value))
        return text;
    JSValueRef exception = nullptr;
    const JSValueRef found = JSObjectGetProperty(frame, JSValueToObject(frame, value, nullptr),
                                                 JSStringHandle(property).Get(), &exception);
    if (exception == nullptr && (JSValueIsString(frame, found) || JSValueIsNumber(frame, found)))
        (void)ToUtf8(frame, found, text, nullptr);
    return text;
}

}  // namespace

void FrameBuiltIns::Capture(JSGlobalContextRef frame) {
    Frames()[frame] = {Take(frame, "reportError"), Take(frame, R"((() => {
        const { apply } = Reflect, Url = URL, get = (type, name) => Object.getOwnPropertyDescriptor(type.prototype, name).get,
            href = get(Url, "href"), baseURI = get(Node, "baseURI");
        return path => apply(href, new Url(path, apply(baseURI, document, [])), []);
    })())"),
                       Take(frame, R"((() => {
        const { apply } = Reflect, Parser = DOMParser, parse = Parser.prototype.parseFromString;
        return text => apply(parse, new Parser(), [text, "text/xml"]);
    })())")};
}

bool FrameBuiltIns::AreOf(JSGlobalContextRef frame) {
    return Frames().contains(frame);
}

void FrameBuiltIns::Forget(JSGlobalContextRef frame) {
    Frames().erase(frame);
}

std::string FrameBuiltIns::ReportException(JSGlobalContextRef frame, const std::string& place,
                                           JSValueRef exception) {
    std::string text;
    if (!ToUtf8(frame, exception, text, nullptr))
        text = "(no text)";
    if (const std::string file = TextOf(frame, exception, "sourceURL"); !file.empty())
        text += " (" + file + ":" + TextOf(frame, exception, "line") + ")";
    HBBTV_LOG_ERROR("%s - %s", place.c_str(), text.c_str());
    (void)CallWith(frame, &Captured::reportError, exception);
    return text;
}

std::string FrameBuiltIns::CompleteUrl(JSContextRef context, const std::string& path) {
    const JSGlobalContextRef frame = JSContextGetGlobalContext(context);
    std::string text;
    if (const JSValueRef url = CallWith(frame, &Captured::completeUrl, MakeString(frame, path)))
        (void)ToUtf8(frame, url, text, nullptr);
    return text;
}

JSValueRef FrameBuiltIns::ParseXml(JSContextRef context, JSValueRef text) {
    return CallWith(JSContextGetGlobalContext(context), &Captured::parseXml, text);
}

}  // namespace OipfJavaScript
