// What a DRM error event carries about the rights that are missing.
#pragma once

#include <cstdint>
#include <string>

struct SDrmErrorParams {
    std::string contentId;
    std::string rightsIssuerUrl;
    uint32_t errorState = 0;
};
