// CI Plus content protection: whether a module's session is open, and what it brings. For trusted pages only.
#pragma once

#include <memory>

#include "API/Src/IPluginController.h"
#include "InjectedBundle/gen/js/COipfGatewayInfoBase.h"

namespace OipfJavaScript {

class jiStringCollection;

class COipfGatewayInfoImpl final : public COipfGatewayInfoBase, public IPluginController {
 public:
    COipfGatewayInfoImpl();
    ~COipfGatewayInfoImpl() override;

    // Each throws for a page that is not trusted.
    [[nodiscard]] bool GetIsCSPGCIPlusDiscovered();
    [[nodiscard]] bool GetIsCSPGCIPlusSupported();
    // A new object each time.
    [[nodiscard]] std::unique_ptr<jiStringCollection> GetCSPGCIPlusDRMType();

    void OnEvent(event_t event) override;

 private:
    // Asks the receiver each time: trust goes with the page that is shown now.
    [[nodiscard]] bool IsTrusted(const char* property);
    void m_OnSASSession(bool open);

    bool m_discovered = false;
};

}  // namespace OipfJavaScript
