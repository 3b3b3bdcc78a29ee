// Functions that the JavaScriptCore library exports without declaring them in its installed headers.
#pragma once

#include <JavaScriptCore/JavaScript.h>

extern "C" {

// Values that the collector sees through an object and scripts do not.
bool JSObjectSetPrivateProperty(JSContextRef, JSObjectRef, JSStringRef propertyName, JSValueRef);
JSValueRef JSObjectGetPrivateProperty(JSContextRef, JSObjectRef, JSStringRef propertyName);

void JSSynchronousGarbageCollectForDebugging(JSContextRef);
}
