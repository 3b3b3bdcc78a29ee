#pragma once

#include <WebKit/WKBase.h>

extern "C" {
typedef enum _WKUserScriptInjectionTime {
    kWKInjectAtDocumentStart,
    kWKInjectAtDocumentEnd
} WKUserScriptInjectionTime;
typedef enum _WKUserContentInjectedFrames {
    kWKInjectInAllFrames,
    kWKInjectInTopFrameOnly
} WKUserContentInjectedFrames;

WK_EXPORT void WKBundleAddUserScript(WKBundleRef bundle, WKBundlePageGroupRef pageGroup,
                                     WKBundleScriptWorldRef scriptWorld, WKStringRef source, WKURLRef url,
                                     WKArrayRef whitelist, WKArrayRef blacklist,
                                     WKUserScriptInjectionTime injectionTime,
                                     WKUserContentInjectedFrames injectedFrames);
}
