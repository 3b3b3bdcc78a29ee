// The programmes that searches found. A programme is retained while an object refers to it.
#pragma once

#include <cstdint>
#include <string>

class IProgrammeCacheCommon {
 public:
    virtual ~IProgrammeCacheCommon() = default;

    virtual bool Retain(uint32_t id) = 0;
    // Nobody waits for it: objects that are collected release.
    virtual void Release(uint32_t id) = 0;

    // A null pointer means that the field is not wanted. The result says whether there is such a programme;
    // fields are untouched when the receiver could not be asked. The channel is named by its identifier in
    // the channel cache, times are in seconds, the rating is an age or 0.
    virtual bool Get(uint32_t id, uint32_t* channelId, uint32_t* eventId, std::string* name,
                     std::string* desc, std::string* crid, uint32_t* start, uint32_t* duration,
                     uint32_t* rating) = 0;
};
