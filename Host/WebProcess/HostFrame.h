// A frame as a bundle sees it: one object for as long as WebKit's frame lives.
#pragma once

#include <JavaScriptCore/JSBase.h>
#include <webkit2/webkit-web-extension.h>

#include "Host/WebProcess/DeprecatedWebKit.h"
#include "Host/WebProcess/WKObjects.h"

namespace WebProcess {

class HostFrame final : public WKObject {
 public:
    explicit HostFrame(WebKitFrame* frame) : m_frame(frame) {}

    // WebKit's frame is gone; whoever still holds this object gets no context from it.
    void detach() { m_frame = nullptr; }

    [[nodiscard]] bool isMainFrame() const { return m_frame && webkit_frame_is_main_frame(m_frame); }
    // Null once the frame is gone.
    [[nodiscard]] JSGlobalContextRef scriptContext() const {
        return m_frame ? scriptContextOf(m_frame) : nullptr;
    }

 private:
    WebKitFrame* m_frame;  // Not owned: its end is reported through detach().
};

}  // namespace WebProcess
