// One parental rating scheme. Its ratings are ages, so it has no list of labels.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "InjectedBundle/gen/js/CParentalRatingSchemeBase.h"

namespace OipfJavaScript {

class jiParentalRating;

class CParentalRatingSchemeImpl : public CParentalRatingSchemeBase {
 public:
    explicit CParentalRatingSchemeImpl(const std::string& name) : m_name(name) {}

    [[nodiscard]] const std::string& GetName() const { return m_name; }
    // The receiver's lock as it is now; value 0 when nothing is locked. Null for another scheme than
    // "dvb-si".
    [[nodiscard]] std::unique_ptr<jiParentalRating> GetThreshold();

    [[nodiscard]] uint32_t GetLength() const { return 0; }
    [[nodiscard]] int32_t IndexOf(const std::string&) const { return -1; }
    // Null.
    [[nodiscard]] std::string IconUri(uint32_t index);
    // Undefined.
    [[nodiscard]] std::string Item(uint32_t index);

 private:
    std::string m_name;
};

}  // namespace OipfJavaScript
