// One parental rating. The scheme "dvb-si" is the only one with a meaning here.
#pragma once

#include <cstdint>
#include <string>

#include "InjectedBundle/gen/js/CParentalRatingBase.h"

namespace OipfJavaScript {

class CParentalRatingImpl : public CParentalRatingBase {
 public:
    static constexpr const char* kDvbSi = "dvb-si";

    CParentalRatingImpl(const std::string& name, const std::string& scheme, int32_t value, int32_t labels,
                        const std::string& region);
    // An age as the receiver knows it: the scheme is "dvb-si", the name the number's decimal text.
    explicit CParentalRatingImpl(int32_t age);

    // Undefined for another scheme.
    [[nodiscard]] std::string GetName();
    [[nodiscard]] const std::string& GetScheme() const { return m_scheme; }
    // Undefined for another scheme.
    [[nodiscard]] int32_t GetValue();
    [[nodiscard]] int32_t GetLabels() const { return m_labels; }
    [[nodiscard]] const std::string& GetRegion() const { return m_region; }

    // Where ratings count as in Australia and New Zealand, they have no names.
    void SetAusNzMode(bool on) { m_ausNzMode = on; }

 private:
    [[nodiscard]] bool HasKnownScheme();

    std::string m_name;
    std::string m_scheme;
    int32_t m_value;
    int32_t m_labels;
    std::string m_region;
    bool m_ausNzMode = false;
};

}  // namespace OipfJavaScript
