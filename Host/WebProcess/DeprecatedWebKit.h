// The two WebKitGTK calls that are deprecated there and have no successor that speaks the JavaScriptCore C
// API, which is what a bundle is given.
#pragma once

#include <webkit2/webkit-web-extension.h>

namespace WebProcess {

#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wdeprecated-declarations"

[[nodiscard]] inline WebKitFrame* mainFrameOf(WebKitWebPage* page) {
    return webkit_web_page_get_main_frame(page);
}

[[nodiscard]] inline JSGlobalContextRef scriptContextOf(WebKitFrame* frame) {
    return webkit_frame_get_javascript_global_context(frame);
}

#pragma GCC diagnostic pop

}  // namespace WebProcess
