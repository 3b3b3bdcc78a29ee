// What the program needs of a frame's own built-ins, taken before a script of the frame can replace them.
// Kept, and with it the frame's global object, until the frame goes.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <string>

namespace OipfJavaScript {

class FrameBuiltIns {
 public:
    FrameBuiltIns() = delete;

    static void Capture(JSGlobalContextRef frame);
    static void Forget(JSGlobalContextRef frame);
    // Whether the frame is there: captured and not forgotten.
    [[nodiscard]] static bool AreOf(JSGlobalContextRef frame);

    // Tells the log, and the frame's window as if nothing had caught it, what a handler has thrown. `place`
    // begins the line, and the rest of it is the result. Runs page code.
    static std::string ReportException(JSGlobalContextRef frame, const std::string& place,
                                       JSValueRef exception);

    // The URL of a path in the frame's document, which knows a `base` element and dots; empty when there is
    // none.
    [[nodiscard]] static std::string CompleteUrl(JSContextRef context, const std::string& path);

    // The document that an XML text describes; null when there is none.
    [[nodiscard]] static JSValueRef ParseXml(JSContextRef context, JSValueRef text);
};

}  // namespace OipfJavaScript
