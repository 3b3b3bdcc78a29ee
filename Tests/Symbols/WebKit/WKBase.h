// A television's own WebKit headers, as far as the bundle needs them: what is declared where, and in C.
// Nothing but a test of the build option HBBTV_PLATFORM_WEBKIT is compiled with these.
#pragma once

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#include <JavaScriptCore/JSBase.h>

#define WK_EXPORT __attribute__((visibility("default")))

typedef const void* WKTypeRef;
typedef const struct OpaqueWKArray* WKArrayRef;
typedef const struct OpaqueWKBundle* WKBundleRef;
typedef const struct OpaqueWKBundleFrame* WKBundleFrameRef;
typedef const struct OpaqueWKBundlePage* WKBundlePageRef;
typedef const struct OpaqueWKBundlePageGroup* WKBundlePageGroupRef;
typedef const struct OpaqueWKBundleScriptWorld* WKBundleScriptWorldRef;
typedef const struct OpaqueWKString* WKStringRef;
typedef const struct OpaqueWKURL* WKURLRef;
