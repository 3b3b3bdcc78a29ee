// The answer to a PlayReady message that a page sent through the DRM agent.
#pragma once

#include <cstdint>
#include <string>

struct IPRResponse {
    uint32_t transactionId = 0;
    int32_t resultCode = 0;
    std::string resultMessage;
};
