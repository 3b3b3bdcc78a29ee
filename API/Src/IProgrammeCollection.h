// Programmes of a channel, as the receiver lists them.
#pragma once

#include <cstdint>
#include <string>

struct TCProgramInfo {
    std::string name;
    std::string description;
    uint32_t startTime = 0;  // seconds since 1970, UTC
    uint32_t duration = 0;   // seconds
    uint8_t parentalRating = 0;
    int32_t eventId = 0;
    std::string programmeId;
};

class IProgrammeCollection {
 public:
    virtual ~IProgrammeCollection() = default;

    [[nodiscard]] virtual int NumberEntries() const = 0;
    // False, with nothing written, for an index that is negative or past the end.
    [[nodiscard]] virtual bool GetInfo(int index, std::string& name, std::string& description,
                                       uint32_t& startTime, uint32_t& duration, uint8_t& parentalRating,
                                       int32_t& eventId, std::string& programmeId) const = 0;
};
