// The receiver's channel records. An entry is retained while a Channel object refers to it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

class IJSChannelCacheCommon {
 public:
    virtual ~IJSChannelCacheCommon() = default;

    // False when the cache does not know the channel, or cannot be asked.
    virtual bool Retain(uint32_t id) = 0;
    // The same, and what is done meanwhile is under way with it. It is done again when nobody has answered:
    // what a receiver says that goes then counts for nothing.
    virtual bool RetainWhile(uint32_t id, const std::function<void()>& meanwhile) = 0;
    // Nobody waits for it: objects that are collected release.
    virtual void Release(uint32_t id) = 0;

    // Changes when the receiver goes. An id means nothing, or something else, in another life of it.
    [[nodiscard]] virtual uint64_t Life() const = 0;

    // Fetches all fields in one call. A null pointer means that the field is not wanted. The result says
    // whether the entry exists; the wanted fields are written with what the cache sent even when it does not,
    // and are untouched when the cache could not be asked. chType: false is television, true is radio.
    virtual bool GetChannelInfo(uint32_t id, std::string* name, std::string* longName,
                                std::string* description, uint32_t* idType, uint32_t* nid, uint32_t* onid,
                                uint32_t* tsid, uint32_t* sid, bool* chType, std::string* ccid,
                                bool* authorised, bool* hidden, bool* locked, bool* manualBlock,
                                uint32_t* maxBitRate, std::string* ipBroadcastId, uint32_t* majorChannel) = 0;
};
