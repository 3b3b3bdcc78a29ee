// The viewer's preferences, read from the receiver at each access and passed on unchanged.
#pragma once

#include <string>

#include "InjectedBundle/gen/js/CConfigurationBase.h"

namespace OipfJavaScript {

class CConfigurationImpl : public CConfigurationBase {
 public:
    [[nodiscard]] std::string GetPreferredAudioLanguage() const;
    [[nodiscard]] std::string GetPreferredSubtitleLanguage() const;
    [[nodiscard]] std::string GetPreferredUILanguage() const;
    [[nodiscard]] std::string GetCountryId() const;
};

}  // namespace OipfJavaScript
