#pragma once

#include <WebKit/WKBase.h>

extern "C" {
typedef struct WKBundlePageUIClientBase {
    int version;
    const void* clientInfo;
} WKBundlePageUIClientBase;

typedef struct WKBundlePageUIClientV2 {
    WKBundlePageUIClientBase base;
    void (*willAddMessageToConsole)(WKBundlePageRef page, WKStringRef message, uint32_t lineNumber,
                                    const void* clientInfo);
} WKBundlePageUIClientV2;
}
