// Functions that the JavaScriptCore library exports without declaring them in its installed headers.
#pragma once

#include <JavaScriptCore/JavaScript.h>

extern "C" {

// Values that the collector sees through an object and scripts do not.
bool JSObjectSetPrivateProperty(JSContextRef, JSObjectRef, JSStringRef propertyName, JSValueRef);
JSValueRef JSObjectGetPrivateProperty(JSContextRef, JSObjectRef, JSStringRef propertyName);

// The global context that an object was made in. Engines that were built before it came have it not: then it
// is null.
JSGlobalContextRef JSObjectGetGlobalContext(JSObjectRef) __attribute__((weak));

void JSSynchronousGarbageCollectForDebugging(JSContextRef);
}
