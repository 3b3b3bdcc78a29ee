// What the web process offers an injected bundle, and the one function that it looks up in it. Start here;
// the other WK headers are the types and the callback tables. With HBBTV_PLATFORM_WEBKIT the platform's own
// headers take the place of these declarations.
#pragma once

#include "Platform/Inc/WKBundleClients.h"
#include "Platform/Inc/WKTypes.h"

#ifdef HBBTV_PLATFORM_WEBKIT

#include <WebKit/WKBundleFrame.h>
#include <WebKit/WKBundlePage.h>
#include <WebKit/WKBundlePrivate.h>
#include <WebKit/WKBundleScriptWorld.h>

#else

#include <JavaScriptCore/JSBase.h>

// Provided by the host and found by name at run time, whatever a module's own default visibility is.
#pragma GCC visibility push(default)

extern "C" {

using WKUserScriptInjectionTime = uint32_t;
enum : WKUserScriptInjectionTime { kWKInjectAtDocumentStart = 0, kWKInjectAtDocumentEnd = 1 };

using WKUserContentInjectedFrames = uint32_t;
enum : WKUserContentInjectedFrames { kWKInjectInAllFrames = 0, kWKInjectInTopFrameOnly = 1 };

// Defined by the bundle, called once on the main thread of each web process.
void WKBundleInitialize(WKBundleRef bundle, WKTypeRef initializationUserData);

// The structures given to the three "Set" functions are copied.
void WKBundleSetClient(WKBundleRef bundle, WKBundleClientBase* client);
void WKBundlePageSetUIClient(WKBundlePageRef page, WKBundlePageUIClientBase* client);
void WKBundlePageSetPageLoaderClient(WKBundlePageRef page, WKBundlePageLoaderClientBase* client);

// A null whitelist allows every URL, a null blacklist refuses none. The source is retained.
void WKBundleAddUserScript(WKBundleRef bundle, WKBundlePageGroupRef pageGroup,
                           WKBundleScriptWorldRef scriptWorld, WKStringRef source, WKURLRef url,
                           WKArrayRef whitelist, WKArrayRef blacklist,
                           WKUserScriptInjectionTime injectionTime,
                           WKUserContentInjectedFrames injectedFrames);

// The world of the page's own scripts; not owned by the caller.
WKBundleScriptWorldRef WKBundleScriptWorldNormalWorld(void);

// Messages to the UI process. The synchronous one blocks until the answer is there; *returnData is null when
// there is none and otherwise owned by the caller.
void WKBundlePostMessage(WKBundleRef bundle, WKStringRef name, WKTypeRef body);
void WKBundlePostSynchronousMessage(WKBundleRef bundle, WKStringRef name, WKTypeRef body,
                                    WKTypeRef* returnData);

// None of these results is owned by the caller.
WKBundleFrameRef WKBundlePageGetMainFrame(WKBundlePageRef page);
JSGlobalContextRef WKBundleFrameGetJavaScriptContext(WKBundleFrameRef frame);
bool WKBundleFrameIsMainFrame(WKBundleFrameRef frame);
}

#pragma GCC visibility pop

#endif
