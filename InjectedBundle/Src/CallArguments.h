// What JavaScriptCore hands to a method callback, in one piece.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstddef>

namespace OipfJavaScript {

struct CallArguments {
    JSContextRef context;
    JSObjectRef thisObject;
    size_t count;
    const JSValueRef* values;
    JSValueRef* exception;
};

}  // namespace OipfJavaScript
