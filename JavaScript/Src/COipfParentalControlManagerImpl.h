// Where a page finds the rating schemes that the receiver knows.
#pragma once

#include <memory>

#include "InjectedBundle/gen/js/COipfParentalControlManagerBase.h"

namespace OipfJavaScript {

class jiParentalRatingSchemeCollection;

class COipfParentalControlManagerImpl : public COipfParentalControlManagerBase {
 public:
    // A new object each time, with the one scheme there is.
    [[nodiscard]] std::unique_ptr<jiParentalRatingSchemeCollection> GetParentalRatingSchemes() const;
};

}  // namespace OipfJavaScript
