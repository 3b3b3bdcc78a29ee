// Leads a page to the receiver's channel list.
#pragma once

#include <memory>

#include "InjectedBundle/gen/js/CChannelConfigBase.h"

namespace OipfJavaScript {

class jiChannelList;

class CChannelConfigImpl : public CChannelConfigBase {
 public:
    // A new list of new channels each time.
    [[nodiscard]] std::unique_ptr<jiChannelList> GetChannelList() const;
};

}  // namespace OipfJavaScript
