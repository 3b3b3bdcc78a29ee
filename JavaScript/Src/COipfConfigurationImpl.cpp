#include "JavaScript/Src/COipfConfigurationImpl.h"

#include "CSP/Inc/PCLog.h"
#include "InjectedBundle/Src/BindingCall.h"
#include "InjectedBundle/gen/js/jiConfiguration.h"
#include "JavaScript/Src/CConfigurationImpl.h"

namespace OipfJavaScript {

std::unique_ptr<jiConfiguration> COipfConfigurationImpl::GetConfiguration() const {
    HBBTV_LOG_INFO("[%s:%d] %s", "CONFIGURATION", __LINE__, __func__);
    return MakeBinding<jiConfiguration>();
}

}  // namespace OipfJavaScript
