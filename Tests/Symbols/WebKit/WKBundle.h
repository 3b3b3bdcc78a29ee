#pragma once

#include <WebKit/WKBase.h>

extern "C" {
typedef struct WKBundleClientBase {
    int version;
    const void* clientInfo;
} WKBundleClientBase;

typedef struct WKBundleClientV1 {
    WKBundleClientBase base;
    void (*didCreatePage)(WKBundleRef bundle, WKBundlePageRef page, const void* clientInfo);
    void (*willDestroyPage)(WKBundleRef bundle, WKBundlePageRef page, const void* clientInfo);
    void (*didInitializePageGroup)(WKBundleRef bundle, WKBundlePageGroupRef pageGroup,
                                   const void* clientInfo);
} WKBundleClientV1;

WK_EXPORT void WKBundleSetClient(WKBundleRef bundle, WKBundleClientBase* client);
WK_EXPORT void WKBundlePostMessage(WKBundleRef bundle, WKStringRef messageName, WKTypeRef messageBody);
WK_EXPORT void WKBundlePostSynchronousMessage(WKBundleRef bundle, WKStringRef messageName,
                                              WKTypeRef messageBody, WKTypeRef* returnRetainedData);
}
