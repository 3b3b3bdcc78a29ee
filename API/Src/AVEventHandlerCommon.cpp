#include "API/Src/AVEventHandlerCommon.h"

#include "CSP/Inc/PCLog.h"

IAVEventHandlerCommon::~IAVEventHandlerCommon() {
    HBBTV_LOG_DEBUG("IAVEventHandlerCommon destructor");
}
