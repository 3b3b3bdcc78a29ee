#pragma once

#include <WebKit/WKBase.h>

extern "C" {
WK_EXPORT WKBundleScriptWorldRef WKBundleScriptWorldNormalWorld(void);
}
