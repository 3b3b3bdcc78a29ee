#pragma once

#include <WebKit/WKBase.h>

extern "C" {
typedef struct WKBundlePageLoaderClientBase {
    int version;
    const void* clientInfo;
} WKBundlePageLoaderClientBase;

typedef struct WKBundlePageLoaderClientV6 {
    WKBundlePageLoaderClientBase base;
    void (*didStartProvisionalLoadForFrame)(WKBundlePageRef page, WKBundleFrameRef frame, WKTypeRef* userData,
                                            const void* clientInfo);
    void (*didRemoveFrameFromHierarchy)(WKBundlePageRef page, WKBundleFrameRef frame, WKTypeRef* userData,
                                        const void* clientInfo);
    void (*didClearWindowObjectForFrame)(WKBundlePageRef page, WKBundleFrameRef frame,
                                         WKBundleScriptWorldRef world, const void* clientInfo);
} WKBundlePageLoaderClientV6;
}
