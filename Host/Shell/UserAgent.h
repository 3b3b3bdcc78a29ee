// The HbbTV part of the user agent, by which a page (and the bundle's script) knows the profile.
#pragma once

#include <string>

namespace Shell {

// Appends the HbbTV token of a profile, such as 1.2.1 or 1.2.1+DL+PVR; an empty profile leaves the user agent
// as it is.
[[nodiscard]] std::string userAgentWithProfile(const std::string& userAgent, const std::string& profile);

}  // namespace Shell
