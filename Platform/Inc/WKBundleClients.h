// The client structures of the WebKit2 bundle C API: tables of callbacks whose order is the platform's binary
// interface. `version` says how much of a table is there, so the slots of each version follow those before
// it. An empty slot is null; every callback gets its table's clientInfo as the last argument.
#pragma once

#ifdef HBBTV_PLATFORM_WEBKIT

#include <WebKit/WKBundle.h>
#include <WebKit/WKBundlePageLoaderClient.h>
#include <WebKit/WKBundlePageUIClient.h>

#else

#include "Platform/Inc/WKTypes.h"

extern "C" {

using WKEventModifiers = uint32_t;
using WKLayoutMilestones = uint32_t;
using WKSameDocumentNavigationType = uint32_t;
using WKBundlePageUIElementVisibility = uint32_t;

// The bundle client.

using WKBundleDidCreatePageCallback = void (*)(WKBundleRef, WKBundlePageRef, const void* clientInfo);
using WKBundleWillDestroyPageCallback = void (*)(WKBundleRef, WKBundlePageRef, const void* clientInfo);
using WKBundleDidInitializePageGroupCallback = void (*)(WKBundleRef, WKBundlePageGroupRef,
                                                        const void* clientInfo);
using WKBundleDidReceiveMessageCallback = void (*)(WKBundleRef, WKStringRef name, WKTypeRef body,
                                                   const void* clientInfo);
using WKBundleDidReceiveMessageToPageCallback = void (*)(WKBundleRef, WKBundlePageRef, WKStringRef name,
                                                         WKTypeRef body, const void* clientInfo);

struct WKBundleClientBase {
    int version;
    const void* clientInfo;
};

struct WKBundleClientV1 {
    WKBundleClientBase base;

    // Version 0
    WKBundleDidCreatePageCallback didCreatePage;
    WKBundleWillDestroyPageCallback willDestroyPage;
    WKBundleDidInitializePageGroupCallback didInitializePageGroup;
    WKBundleDidReceiveMessageCallback didReceiveMessage;

    // Version 1
    WKBundleDidReceiveMessageToPageCallback didReceiveMessageToPage;
};

// The page UI client.

using WKBundlePageWillAddMessageToConsoleCallback = void (*)(WKBundlePageRef, WKStringRef message,
                                                             uint32_t lineNumber, const void* clientInfo);
using WKBundlePageWillSetStatusbarTextCallback = void (*)(WKBundlePageRef, WKStringRef text,
                                                          const void* clientInfo);
using WKBundlePageWillRunJavaScriptAlertCallback = void (*)(WKBundlePageRef, WKStringRef text,
                                                            WKBundleFrameRef, const void* clientInfo);
using WKBundlePageWillRunJavaScriptConfirmCallback = void (*)(WKBundlePageRef, WKStringRef text,
                                                              WKBundleFrameRef, const void* clientInfo);
using WKBundlePageWillRunJavaScriptPromptCallback = void (*)(WKBundlePageRef, WKStringRef text,
                                                             WKStringRef defaultValue, WKBundleFrameRef,
                                                             const void* clientInfo);
using WKBundlePageMouseDidMoveOverElementCallback = void (*)(WKBundlePageRef, WKBundleHitTestResultRef,
                                                             WKEventModifiers, WKTypeRef* userData,
                                                             const void* clientInfo);
using WKBundlePageDidScrollCallback = void (*)(WKBundlePageRef, const void* clientInfo);
using WKBundlePageGenerateFileForUploadCallback = WKStringRef (*)(WKBundlePageRef,
                                                                  WKStringRef originalFilePath,
                                                                  const void* clientInfo);
using WKBundlePageUIElementVisibilityCallback = WKBundlePageUIElementVisibility (*)(WKBundlePageRef,
                                                                                    const void* clientInfo);
using WKBundlePageShouldGenerateFileForUploadCallback = bool (*)(WKBundlePageRef,
                                                                 WKStringRef originalFilePath,
                                                                 const void* clientInfo);
using WKBundlePageDidReachApplicationCacheOriginQuotaCallback = void (*)(WKBundlePageRef, WKSecurityOriginRef,
                                                                         int64_t totalBytesNeeded,
                                                                         const void* clientInfo);
using WKBundlePageDidExceedDatabaseQuotaCallback =
    uint64_t (*)(WKBundlePageRef, WKSecurityOriginRef, WKStringRef databaseName, WKStringRef displayName,
                 uint64_t quotaBytes, uint64_t originUsageBytes, uint64_t databaseUsageBytes,
                 uint64_t expectedUsageBytes, const void* clientInfo);
using WKBundlePageCreatePlugInStartLabelCallback = WKStringRef (*)(WKStringRef mimeType,
                                                                   const void* clientInfo);
using WKBundlePageCreatePlugInExtraTextCallback = WKStringRef (*)(const void* clientInfo);

struct WKBundlePageUIClientBase {
    int version;
    const void* clientInfo;
};

struct WKBundlePageUIClientV2 {
    WKBundlePageUIClientBase base;

    // Version 0
    WKBundlePageWillAddMessageToConsoleCallback willAddMessageToConsole;
    WKBundlePageWillSetStatusbarTextCallback willSetStatusbarText;
    WKBundlePageWillRunJavaScriptAlertCallback willRunJavaScriptAlert;
    WKBundlePageWillRunJavaScriptConfirmCallback willRunJavaScriptConfirm;
    WKBundlePageWillRunJavaScriptPromptCallback willRunJavaScriptPrompt;
    WKBundlePageMouseDidMoveOverElementCallback mouseDidMoveOverElement;
    WKBundlePageDidScrollCallback pageDidScroll;
    void* unused1;
    WKBundlePageShouldGenerateFileForUploadCallback shouldGenerateFileForUpload;
    WKBundlePageGenerateFileForUploadCallback generateFileForUpload;
    void* unused2;
    WKBundlePageUIElementVisibilityCallback statusBarIsVisible;
    WKBundlePageUIElementVisibilityCallback menuBarIsVisible;
    WKBundlePageUIElementVisibilityCallback toolbarsAreVisible;

    // Version 1
    WKBundlePageDidReachApplicationCacheOriginQuotaCallback didReachApplicationCacheOriginQuota;

    // Version 2
    WKBundlePageDidExceedDatabaseQuotaCallback didExceedDatabaseQuota;
    WKBundlePageCreatePlugInStartLabelCallback createPlugInStartLabelTitle;
    WKBundlePageCreatePlugInStartLabelCallback createPlugInStartLabelSubtitle;
    WKBundlePageCreatePlugInExtraTextCallback createPlugInExtraStyleSheet;
    WKBundlePageCreatePlugInExtraTextCallback createPlugInExtraScript;
};

// The page loader client. The first type serves start, redirect, commit and end of a load, first layout,
// removal of a frame and the content warnings.

using WKBundlePageFrameCallback = void (*)(WKBundlePageRef, WKBundleFrameRef, WKTypeRef* userData,
                                           const void* clientInfo);
using WKBundlePageFrameErrorCallback = void (*)(WKBundlePageRef, WKBundleFrameRef, WKErrorRef,
                                                WKTypeRef* userData, const void* clientInfo);
using WKBundlePageFrameNoticeCallback = void (*)(WKBundlePageRef, WKBundleFrameRef, const void* clientInfo);
using WKBundlePageFrameWorldCallback = void (*)(WKBundlePageRef, WKBundleFrameRef, WKBundleScriptWorldRef,
                                                const void* clientInfo);
using WKBundlePageSameDocumentNavigationCallback = void (*)(WKBundlePageRef, WKBundleFrameRef,
                                                            WKSameDocumentNavigationType, WKTypeRef* userData,
                                                            const void* clientInfo);
using WKBundlePageTitleCallback = void (*)(WKBundlePageRef, WKStringRef title, WKBundleFrameRef,
                                           WKTypeRef* userData, const void* clientInfo);
using WKBundlePageClientRedirectCallback = void (*)(WKBundlePageRef, WKBundleFrameRef, WKURLRef, double delay,
                                                    double date, const void* clientInfo);
using WKBundlePageBackForwardCallback = bool (*)(WKBundlePageRef, WKBundleBackForwardListItemRef,
                                                 WKTypeRef* userData, const void* clientInfo);
using WKBundlePageWindowExtensionCallback = void (*)(WKBundlePageRef, WKBundleDOMWindowExtensionRef,
                                                     const void* clientInfo);
using WKBundlePageNoticeCallback = void (*)(WKBundlePageRef, const void* clientInfo);
using WKBundlePageForceUniversalAccessCallback = bool (*)(WKBundlePageRef, WKStringRef url,
                                                          const void* clientInfo);
using WKBundlePageLayoutCallback = void (*)(WKBundlePageRef, WKLayoutMilestones, WKTypeRef* userData,
                                            const void* clientInfo);
using WKBundlePageFeaturesUsedCallback = void (*)(WKBundlePageRef, WKArrayRef features,
                                                  const void* clientInfo);
using WKBundlePageWillLoadURLRequestCallback = void (*)(WKBundlePageRef, WKURLRequestRef, WKTypeRef userData,
                                                        const void* clientInfo);
using WKBundlePageWillLoadDataRequestCallback = void (*)(WKBundlePageRef, WKURLRequestRef, WKDataRef,
                                                         WKStringRef mimeType, WKStringRef encoding,
                                                         WKURLRef unreachableUrl, WKTypeRef userData,
                                                         const void* clientInfo);

struct WKBundlePageLoaderClientBase {
    int version;
    const void* clientInfo;
};

struct WKBundlePageLoaderClientV6 {
    WKBundlePageLoaderClientBase base;

    // Version 0
    WKBundlePageFrameCallback didStartProvisionalLoadForFrame;
    WKBundlePageFrameCallback didReceiveServerRedirectForProvisionalLoadForFrame;
    WKBundlePageFrameErrorCallback didFailProvisionalLoadWithErrorForFrame;
    WKBundlePageFrameCallback didCommitLoadForFrame;
    WKBundlePageFrameCallback didFinishDocumentLoadForFrame;
    WKBundlePageFrameCallback didFinishLoadForFrame;
    WKBundlePageFrameErrorCallback didFailLoadWithErrorForFrame;
    WKBundlePageSameDocumentNavigationCallback didSameDocumentNavigationForFrame;
    WKBundlePageTitleCallback didReceiveTitleForFrame;
    WKBundlePageFrameCallback didFirstLayoutForFrame;
    WKBundlePageFrameCallback didFirstVisuallyNonEmptyLayoutForFrame;
    WKBundlePageFrameCallback didRemoveFrameFromHierarchy;
    WKBundlePageFrameCallback didDisplayInsecureContentForFrame;
    WKBundlePageFrameCallback didRunInsecureContentForFrame;
    WKBundlePageFrameWorldCallback didClearWindowObjectForFrame;
    WKBundlePageFrameNoticeCallback didCancelClientRedirectForFrame;
    WKBundlePageClientRedirectCallback willPerformClientRedirectForFrame;
    WKBundlePageFrameNoticeCallback didHandleOnloadEventsForFrame;

    // Version 1
    WKBundlePageFrameNoticeCallback didLayoutForFrame;
    void* unavailable1;
    WKBundlePageFrameCallback didDetectXSSForFrame;
    WKBundlePageBackForwardCallback shouldGoToBackForwardListItem;
    WKBundlePageFrameWorldCallback globalObjectIsAvailableForFrame;
    WKBundlePageWindowExtensionCallback willDisconnectDOMWindowExtensionFromGlobalObject;
    WKBundlePageWindowExtensionCallback didReconnectDOMWindowExtensionToGlobalObject;
    WKBundlePageWindowExtensionCallback willDestroyGlobalObjectForDOMWindowExtension;

    // Version 2
    WKBundlePageNoticeCallback didFinishProgress;
    WKBundlePageForceUniversalAccessCallback shouldForceUniversalAccessFromLocalURL;

    // Version 3
    void* unavailable2;
    void* unavailable3;

    // Version 4
    WKBundlePageLayoutCallback didLayout;

    // Version 5
    WKBundlePageFeaturesUsedCallback featuresUsedInPage;

    // Version 6
    WKBundlePageWillLoadURLRequestCallback willLoadURLRequest;
    WKBundlePageWillLoadDataRequestCallback willLoadDataRequest;
};
}

#endif
