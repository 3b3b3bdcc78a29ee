// The names and values that the page's script collects from an object element and its parameters.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <map>
#include <string>

namespace OipfJavaScript {

using AttributeMap = std::map<std::string, std::string>;

// Reads the enumerable properties of an object as texts. Page code can run, and so fail: then the result is
// false and the exception slot is filled.
[[nodiscard]] bool ReadAttributeMap(JSContextRef context, JSObjectRef object, AttributeMap& attributes,
                                    JSValueRef* exception);

}  // namespace OipfJavaScript
