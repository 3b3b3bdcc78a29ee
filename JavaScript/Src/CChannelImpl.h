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

    [[nodiscard]] int32_t GetChannelType() const { return m_record.channelType; }
    [[nodiscard]] const std::string& GetCcid() const { return m_record.ccid; }
    // Undefined while absent.
    [[nodiscard]] uint32_t GetNid();
    [[nodiscard]] JSValueRef getCustomDsd(JSContextRef context, JSObjectRef channel) const;
    [[nodiscard]] uint32_t GetOnid() const { return m_record.onid; }
    [[nodiscard]] uint32_t GetTsid() const { return m_record.tsid; }
    [[nodiscard]] uint32_t GetSid() const { return m_record.sid; }
    [[nodiscard]] const std::string& GetName() const { return m_record.name; }
    [[nodiscard]] const std::string& GetLongName() const { return m_record.longName; }
    [[nodiscard]] const std::string& GetDescription() const { return m_record.description; }
    [[nodiscard]] bool GetAuthorised() const { return m_record.authorised; }
    // The receiver sends no genres.
    [[nodiscard]] std::unique_ptr<jiStringCollection> GetGenre() const;
    [[nodiscard]] bool GetHidden() const { return m_record.hidden; }
    [[nodiscard]] int32_t GetIdType() const { return static_cast<int32_t>(m_record.idType); }
    [[nodiscard]] uint32_t GetMajorChannel() const { return m_record.majorChannel; }
    [[nodiscard]] bool GetManualBlock() const { return m_record.manualBlock; }
    [[nodiscard]] uint32_t GetChannelMaxBitRate() const { return m_record.channelMaxBitRate; }
    [[nodiscard]] const std::string& GetIpBroadcastID() const { return m_record.ipBroadcastID; }
    [[nodiscard]] bool GetLocked() const { return m_record.locked; }

    // Whether a page that names a channel by this text, or by these three numbers, means this one.
    [[nodiscard]] bool MatchesChannelID(const std::string& id) const {
        return id == m_record.ccid || id == m_record.ipBroadcastID;
    }
    [[nodiscard]] bool MatchesTriplet(uint32_t onid, uint32_t tsid, uint32_t sid) const {
        return onid == m_record.onid && tsid == m_record.tsid && sid == m_record.sid;
    }

    // One byte per character.
    [[nodiscard]] const std::string& Dsd() const { return m_dsd; }
    [[nodiscard]] uint32_t CacheId() const { return m_cacheEntry.Id(); }

 private:
    // What the receiver's cache has of it.
    struct Record {
        int32_t channelType = TYPE_TV;
        std::string ccid = kNoCcid;
        uint32_t nid = kAbsent;
        uint32_t onid = kAbsent;
        uint32_t tsid = kAbsent;
        uint32_t sid = kAbsent;
        std::string name = {};
        std::string longName = {};
        std::string description = {};
        bool authorised = false;
        bool hidden = false;
        uint32_t idType = ID_DVB_T;
        uint32_t majorChannel = kAbsent;
        bool manualBlock = false;
        uint32_t channelMaxBitRate = kAbsent;
        std::string ipBroadcastID = {};
        bool locked = false;
    };

    [[nodiscard]] static Record RecordOf(uint32_t cacheId);

    Record m_record;
    std::string m_dsd;
    ChannelCacheEntry m_cacheEntry;  // the last, since the record is read while it is made
};

}  // namespace OipfJavaScript
