// Makes the native objects that the bootstrap script puts behind object elements. Nothing is kept: every call
// makes a new object, whose life is that of its JavaScript object.
#pragma once

#include <cstdint>
#include <memory>

#include "InjectedBundle/gen/js/CPrivateObjectFactoryBase.h"

namespace OipfJavaScript {

class jiChannelConfig;
class jiOipfAVControl;
class jiOipfApplicationManager;
class jiOipfCapabilities;
class jiOipfConfiguration;
class jiOipfDrmAgent;
class jiOipfGatewayInfo;
class jiOipfParentalControlManager;
class jiOipfSearchManager;
class jiOipfVideoBroadcast;

class CPrivateObjectFactoryImpl : public CPrivateObjectFactoryBase {
 public:
    [[nodiscard]] std::unique_ptr<jiOipfVideoBroadcast> CreateVideoBroadcastObject(JSContextRef context);
    [[nodiscard]] std::unique_ptr<jiOipfAVControl> CreateVideoMpegObject(JSContextRef context);
    [[nodiscard]] std::unique_ptr<jiOipfApplicationManager> CreateApplicationManagerObject();
    [[nodiscard]] std::unique_ptr<jiOipfCapabilities> CreateCapabilitiesObject();
    [[nodiscard]] std::unique_ptr<jiChannelConfig> CreateChannelConfig();
    [[nodiscard]] std::unique_ptr<jiOipfConfiguration> CreateConfigurationObject();
    [[nodiscard]] std::unique_ptr<jiOipfGatewayInfo> CreateGatewayInfoObject();
    [[nodiscard]] std::unique_ptr<jiOipfParentalControlManager> CreateParentalControlManagerObject();
    // A "TypeError" on a receiver without them.
    [[nodiscard]] std::unique_ptr<jiOipfDrmAgent> CreateDrmAgentObject();
    [[nodiscard]] std::unique_ptr<jiOipfSearchManager> CreateSearchManagerObject();
};

}  // namespace OipfJavaScript
