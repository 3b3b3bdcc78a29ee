// One programme of a broadcast channel.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "API/Src/IProgrammeCollection.h"
#include "InjectedBundle/gen/js/CProgrammeBase.h"

namespace OipfJavaScript {

class jiParentalRatingCollection;
class jiStringCollection;

class CProgrammeImpl : public CProgrammeBase {
 public:
    // `cacheId` names the channel to the receiver, `ccid` to pages.
    CProgrammeImpl(const TCProgramInfo& info, uint32_t cacheId, const std::string& ccid)
        : m_info(info), m_cacheId(cacheId), m_ccid(ccid) {}

    [[nodiscard]] const std::string& GetName() const { return m_info.name; }
    // The receiver sends one title, one description and no episodes: undefined.
    [[nodiscard]] std::string GetLongName();
    [[nodiscard]] const std::string& GetDescription() const { return m_info.description; }
    [[nodiscard]] std::string GetLongDescription();
    [[nodiscard]] uint32_t GetStartTime() const { return m_info.startTime; }
    [[nodiscard]] uint32_t GetDuration() const { return m_info.duration; }
    [[nodiscard]] const std::string& GetChannelID() const { return m_ccid; }
    [[nodiscard]] int32_t GetEpisode();
    [[nodiscard]] int32_t GetTotalEpisodes();
    [[nodiscard]] const std::string& GetProgrammeID() const { return m_info.programmeId; }
    // A CRID is told by its scheme; everything else names an event of the broadcast.
    [[nodiscard]] int32_t GetProgrammeIDType() const;
    // A new collection each time, empty when the programme has no rating.
    [[nodiscard]] std::unique_ptr<jiParentalRatingCollection> GetParentalRating() const;

    // The event's descriptors, one text each with one character per byte; null when there are none.
    [[nodiscard]] std::unique_ptr<jiStringCollection> GetSIDescriptors(
        int32_t tag, std::optional<int32_t> tagExtension, std::optional<uint32_t> privateData) const;

 private:
    TCProgramInfo m_info;
    uint32_t m_cacheId;
    std::string m_ccid;
};

}  // namespace OipfJavaScript
