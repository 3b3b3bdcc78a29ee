#pragma once

#include <WebKit/WKBase.h>

extern "C" {
WK_EXPORT void WKRelease(WKTypeRef type);
}
