// The objects that the runtime hands to pages by itself. It knows none of their classes: the room of the
// objects, which leans on the runtime, defines these functions beside them.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <optional>
#include <string>

namespace OipfJavaScript {

// What a DOM level 2 listener is called with; null when there is no memory for it.
[[nodiscard]] JSObjectRef MakeEvent(JSContextRef context, const char* type, JSObjectRef target);

// Throws an exception object: logs it, and fills the exception slot.
void Throw(const char* where, JSContextRef context, const std::string& name, const std::string& message,
           JSValueRef* exception);

// Kind and text of an exception object; nothing for any other value.
[[nodiscard]] std::optional<std::string> TextOfException(JSContextRef context, JSValueRef value);

}  // namespace OipfJavaScript
