// Holder of the receiver's configuration.
#pragma once

#include <memory>

#include "InjectedBundle/gen/js/COipfConfigurationBase.h"

namespace OipfJavaScript {

class jiConfiguration;

class COipfConfigurationImpl : public COipfConfigurationBase {
 public:
    // A new object each time.
    [[nodiscard]] std::unique_ptr<jiConfiguration> GetConfiguration() const;
};

}  // namespace OipfJavaScript
