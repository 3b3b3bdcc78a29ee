// The capability description, made from the scenario.
#pragma once

#include <string>

#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

// The scenario's own description, whatever it holds, or the "profilelist" document of its profiles. Bundles
// put it into a JavaScript text between double quotes as it is, so the document holds neither a double quote
// nor a line break nor a backslash.
[[nodiscard]] std::string capabilitiesXml(const Scenario& scenario);

// A base profile, one of its options ("+DRM" or "DRM"), or a base profile with options behind it.
[[nodiscard]] bool hasCapability(const Scenario& scenario, const std::string& name);

}  // namespace Receiver
