// One stream event of the broadcast, as it travels from the D-Bus client to the subscribed objects.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// Identifies one stream-event subscription at the receiver; 0 is none.
using TDSMCCJobId = unsigned long;

enum EEventStatus : uint32_t {
    E_EVENT_STATUS_TRIGGER = 0,
    E_EVENT_STATUS_ERROR = 1,
};

// The event's payload is bytes, not text: it may hold NULs and be of any length, zero included.
struct CDSMCCStreamEventData {
    EEventStatus status = E_EVENT_STATUS_TRIGGER;
    uint16_t eventId = 0;
    std::string name;
    std::vector<uint8_t> data;
    uint32_t jobId = 0;
};
