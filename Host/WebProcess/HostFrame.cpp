#include "Host/WebProcess/HostFrame.h"

#include "Host/WebProcess/DeprecatedWebKit.h"

namespace WebProcess {

JSGlobalContextRef HostFrame::scriptContext() const {
    return m_frame ? scriptContextOf(m_frame) : nullptr;
}

}  // namespace WebProcess
