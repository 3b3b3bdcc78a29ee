#include "JavaScript/Src/CApplicationPrivateDataImpl.h"

#include <fstream>
#include <sstream>
#include <string>

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiChannel.h"
#include "InjectedBundle/gen/js/jiKeyset.h"
#include "JavaScript/Src/CChannelImpl.h"
#include "JavaScript/Src/CKeysetImpl.h"

namespace OipfJavaScript {

std::unique_ptr<jiKeyset> CApplicationPrivateDataImpl::GetKeyset() const {
    return MakeBinding<jiKeyset>();
}

std::unique_ptr<jiChannel> CApplicationPrivateDataImpl::GetCurrentChannel() {
    auto* api = CDAEBrowserAPIWK::GetInstance();
    uint32_t channel = 0;
    if (!api->IsBroadcastRelated() || !api->CurrentChannel(channel)) {
        HBBTV_LOG_INFO("%s::%s no current channel", jiApplicationPrivateData::ID, __func__);
        Fail();
        return nullptr;
    }
    return MakeBinding<jiChannel>(channel);
}

int32_t CApplicationPrivateDataImpl::GetFreeMem() const {
    HBBTV_LOG_ENTRY();
    // The free memory is the figure on the second line, the fifth word of the file.
    std::ifstream meminfo("/proc/meminfo");
    std::string word;
    for (int i = 0; i < 5; ++i)
        meminfo >> word;
    int32_t kilobytes = 0;
    if (!meminfo || !(std::istringstream(word) >> kilobytes))
        return 0;
    return kilobytes;
}

}  // namespace OipfJavaScript
