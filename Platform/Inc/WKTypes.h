// Opaque types of the WebKit2 bundle C API, its string, and the one rule of ownership: a "Create" or an
// out-parameter hands the caller a reference that WKRelease gives back; a "Get" or a callback argument does
// not.
#pragma once

#ifdef HBBTV_PLATFORM_WEBKIT

#include <WebKit/WKString.h>
#include <WebKit/WKType.h>

#else

#include <cstddef>
#include <cstdint>

// Provided by the host and found by name at run time, whatever a module's own default visibility is.
#pragma GCC visibility push(default)

extern "C" {

// The base of every object type: any of the references below converts to it.
using WKTypeRef = const void*;

using WKArrayRef = const struct OpaqueWKArray*;
using WKDataRef = const struct OpaqueWKData*;
using WKErrorRef = const struct OpaqueWKError*;
using WKSecurityOriginRef = const struct OpaqueWKSecurityOrigin*;
using WKStringRef = const struct OpaqueWKString*;
using WKURLRef = const struct OpaqueWKURL*;
using WKURLRequestRef = const struct OpaqueWKURLRequest*;

using WKBundleRef = const struct OpaqueWKBundle*;
using WKBundlePageRef = const struct OpaqueWKBundlePage*;
using WKBundleFrameRef = const struct OpaqueWKBundleFrame*;
using WKBundlePageGroupRef = const struct OpaqueWKBundlePageGroup*;
using WKBundleScriptWorldRef = const struct OpaqueWKBundleScriptWorld*;
using WKBundleHitTestResultRef = const struct OpaqueWKBundleHitTestResult*;
using WKBundleBackForwardListItemRef = const struct OpaqueWKBundleBackForwardListItem*;
using WKBundleDOMWindowExtensionRef = const struct OpaqueWKBundleDOMWindowExtension*;

// Gives back one reference; null is not allowed.
void WKRelease(WKTypeRef type);

// The text must be UTF-8; the caller owns the result.
WKStringRef WKStringCreateWithUTF8CString(const char* text);

// Bytes that are always enough for the text as UTF-8, terminator included.
size_t WKStringGetMaximumUTF8CStringSize(WKStringRef string);

// Writes as many whole characters as fit, and a terminator; returns the bytes written, terminator included.
size_t WKStringGetUTF8CString(WKStringRef string, char* buffer, size_t bufferSize);
}

#pragma GCC visibility pop

#endif
