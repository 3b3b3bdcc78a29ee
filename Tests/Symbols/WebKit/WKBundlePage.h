#pragma once

#include <WebKit/WKBase.h>

#include <WebKit/WKBundlePageLoaderClient.h>
#include <WebKit/WKBundlePageUIClient.h>

extern "C" {
WK_EXPORT void WKBundlePageSetPageLoaderClient(WKBundlePageRef page, WKBundlePageLoaderClientBase* client);
WK_EXPORT void WKBundlePageSetUIClient(WKBundlePageRef page, WKBundlePageUIClientBase* client);
WK_EXPORT WKBundleFrameRef WKBundlePageGetMainFrame(WKBundlePageRef page);
}
