#include "Host/Shell/UserAgent.h"

#include <algorithm>

namespace Shell {

std::string userAgentWithProfile(const std::string& userAgent, const std::string& profile) {
    if (profile.empty())
        return userAgent;
    const size_t options = std::min(profile.find('+'), profile.size());
    // Options; vendor; model; software version; hardware version; reserved.
    return userAgent + " HbbTV/" + profile.substr(0, options) + " (" + profile.substr(options) +
           "; Vantrel; Desktop; " HBBTV_VERSION "; ; )";
}

}  // namespace Shell
