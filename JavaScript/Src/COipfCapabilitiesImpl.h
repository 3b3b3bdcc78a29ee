// What the receiver can do, asked of it at each access.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstdint>
#include <string>

#include "InjectedBundle/gen/js/COipfCapabilitiesBase.h"

namespace OipfJavaScript {

class COipfCapabilitiesImpl : public COipfCapabilitiesBase {
 public:
    // A new XML document of the page's own. A text that does not fit into a script makes the read throw what
    // the script threw.
    [[nodiscard]] JSValueRef GetXmlCapabilities(JSContextRef context);
    // Pages learn of no more decoders than the one they have.
    [[nodiscard]] int32_t GetExtraSDVideoDecodes() const { return 0; }
    [[nodiscard]] int32_t GetExtraHDVideoDecodes() const { return 0; }
    [[nodiscard]] bool HasCapability(const std::string& profileName) const;
};

}  // namespace OipfJavaScript
