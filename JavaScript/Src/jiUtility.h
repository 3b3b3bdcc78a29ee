// Conversion and path routines that the binding layer and the implementation objects share.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstddef>
#include <string>

namespace OipfJavaScript {

class jiUtility {
 public:
    jiUtility() = delete;

    [[nodiscard]] static std::string JSStringToString(JSStringRef string);
    // True and the value when the whole text is a base-10 unsigned number; an empty text is 0. Otherwise
    // false, and the value is untouched.
    [[nodiscard]] static bool JSStringToLong(JSStringRef string, long& value);
    // Empty when the conversion threw; then the exception slot is filled.
    [[nodiscard]] static std::string JSValueToString(JSContextRef context, JSValueRef value,
                                                     JSValueRef* exception);
    // The type's name for log lines.
    [[nodiscard]] static const char* JSValueQueryType(JSContextRef context, JSValueRef value);

    // URL of the folder of the page's document, with its closing slash; empty when there is none.
    [[nodiscard]] static std::string GetDocumentLocation(JSContextRef context);
    // URL of the page's document; empty when there is none.
    [[nodiscard]] static std::string GetDocumentUrl(JSContextRef context);
    // Makes a relative path an absolute URL, from the document's base; what holds "://" is left alone.
    static void MakeAbsolutePath(JSContextRef context, std::string& path);

    // An Exception object for the exception slot, which the caller fills with it.
    [[nodiscard]] static JSObjectRef JSObjectMakeException(const char* where, JSContextRef context,
                                                           const std::string& name,
                                                           const std::string& message, JSValueRef* exception);

    // `length` counts 16-bit units or bytes. What is ill-formed becomes U+FFFD.
    [[nodiscard]] static std::string Ucs2ToUtf8(const char16_t* text, size_t length);
    [[nodiscard]] static std::u16string Utf8ToUcs2(const char* text, size_t length);
};

}  // namespace OipfJavaScript
