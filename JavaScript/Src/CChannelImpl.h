// One broadcast service as a page sees it. Its values are fixed once it is made.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "API/Src/IBroadcastPlayerCommon.h"
#include "InjectedBundle/gen/js/CChannelBase.h"
#include "JavaScript/Src/ChannelCacheEntry.h"

namespace OipfJavaScript {

class jiStringCollection;

class CChannelImpl : public CChannelBase {
 public:
    static constexpr uint32_t kAbsent = 0xFFFFFFFF;
    // The ccid of a channel that the receiver has not named.
    static constexpr const char* kNoCcid = "ccid://0.0";

    // From the receiver's channel cache, whose entry is retained for as long as this object lives. 0 names no
    // entry.
    explicit CChannelImpl(uint32_t cacheId);
    // As pages describe a channel; these never touch the cache.
    CChannelImpl(int32_t idType, const std::string& dsd, int32_t sid);
    CChannelImpl(int32_t idType, int32_t onid, int32_t tsid, int32_t sid);

    [[nodiscard]] int32_t GetChannelType() const { return m_channelType; }
    [[nodiscard]] const std::string& GetCcid() const { return m_ccid; }
    // Undefined while absent.
    [[nodiscard]] uint32_t GetNid();
    [[nodiscard]] JSValueRef getCustomDsd(JSContextRef context, JSObjectRef channel) const;
    [[nodiscard]] uint32_t GetOnid() const { return m_onid; }
    [[nodiscard]] uint32_t GetTsid() const { return m_tsid; }
    [[nodiscard]] uint32_t GetSid() const { return m_sid; }
    [[nodiscard]] const std::string& GetName() const { return m_name; }
    [[nodiscard]] const std::string& GetLongName() const { return m_longName; }
    [[nodiscard]] const std::string& GetDescription() const { return m_description; }
    [[nodiscard]] bool GetAuthorised() const { return m_authorised; }
    // The receiver sends no genres.
    [[nodiscard]] std::unique_ptr<jiStringCollection> GetGenre() const;
    [[nodiscard]] bool GetHidden() const { return m_hidden; }
    [[nodiscard]] int32_t GetIdType() const { return static_cast<int32_t>(m_idType); }
    [[nodiscard]] uint32_t GetMajorChannel() const { return m_majorChannel; }
    [[nodiscard]] bool GetManualBlock() const { return m_manualBlock; }
    [[nodiscard]] uint32_t GetChannelMaxBitRate() const { return m_channelMaxBitRate; }
    [[nodiscard]] const std::string& GetIpBroadcastID() const { return m_ipBroadcastID; }
    [[nodiscard]] bool GetLocked() const { return m_locked; }

    // Whether a page that names a channel by this text, or by these three numbers, means this one.
    [[nodiscard]] bool MatchesChannelID(const std::string& id) const {
        return id == m_ccid || id == m_ipBroadcastID;
    }
    [[nodiscard]] bool MatchesTriplet(uint32_t onid, uint32_t tsid, uint32_t sid) const {
        return onid == m_onid && tsid == m_tsid && sid == m_sid;
    }

    // One byte per character.
    [[nodiscard]] const std::string& Dsd() const { return m_dsd; }
    [[nodiscard]] uint32_t CacheId() const { return m_cacheEntry.Id(); }

 private:
    void ReadFrom(uint32_t cacheId);

    int32_t m_channelType = TYPE_TV;
    std::string m_ccid = kNoCcid;
    uint32_t m_nid = kAbsent;
    std::string m_dsd;
    uint32_t m_onid = kAbsent;
    uint32_t m_tsid = kAbsent;
    uint32_t m_sid = kAbsent;
    std::string m_name;
    std::string m_longName;
    std::string m_description;
    bool m_authorised = false;
    bool m_hidden = false;
    uint32_t m_idType = ID_DVB_T;
    uint32_t m_majorChannel = kAbsent;
    bool m_manualBlock = false;
    uint32_t m_channelMaxBitRate = kAbsent;
    std::string m_ipBroadcastID;
    bool m_locked = false;
    ChannelCacheEntry m_cacheEntry;  // the last, since the others are read while it is made
};

}  // namespace OipfJavaScript
