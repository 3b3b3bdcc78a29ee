#include "Host/Shell/UserAgent.h"

namespace Shell {

std::string userAgentWithProfile(const std::string& userAgent, const std::string& profile) {
    if (profile.empty())
        return userAgent;
    // Capabilities; vendor; model; software version; hardware version; reserved.
    return userAgent + " HbbTV/" + profile + " (; Vantrel; Desktop; 1.0; ; )";
}

}  // namespace Shell
