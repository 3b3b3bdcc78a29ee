// Makes searches, and fires their events for as long as it lives.
#pragma once

#include <memory>

#include "InjectedBundle/gen/js/COipfSearchManagerBase.h"
#include "JavaScript/Src/SearchSession.h"

namespace OipfJavaScript {

class jiChannelConfig;

class COipfSearchManagerImpl final : public COipfSearchManagerBase {
 public:
    COipfSearchManagerImpl();
    // Its searches go on, unheard.
    ~COipfSearchManagerImpl() override;

    [[nodiscard]] JSValueRef customCreateSearch(const CallArguments& call);
    [[nodiscard]] std::unique_ptr<jiChannelConfig> GetChannelConfig();

 private:
    std::shared_ptr<SearchManagerLink> m_link;
};

}  // namespace OipfJavaScript
