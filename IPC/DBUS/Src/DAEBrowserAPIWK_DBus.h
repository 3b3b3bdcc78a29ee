// The client of org.vantrel.hbbtv.IDAEBrowserAPI, and the one receiver of its signals.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "API/Src/IDAEBrowserAPICommon.h"
#include "API/Src/IPluginController.h"
#include "IPC/DBUS/Src/PluginSubscribers.h"

template <typename Proxy>
class DBusService;
struct _GVariant;
struct _IDAEBrowserAPI;

// What GetProgCollection received.
class CDBusProgrammeCollection final : public IProgrammeCollection {
 public:
    // An array of (ssuuyis).
    explicit CDBusProgrammeCollection(_GVariant* programmes);

    [[nodiscard]] int NumberEntries() const override { return static_cast<int>(m_programmes.size()); }
    [[nodiscard]] bool GetInfo(int index, std::string& name, std::string& description, uint32_t& startTime,
                               uint32_t& duration, uint8_t& parentalRating, int32_t& eventId,
                               std::string& programmeId) const override;

 private:
    std::vector<TCProgramInfo> m_programmes;
};

class CDAEBrowserAPIWK final : public IDAEBrowserAPICommon {
 public:
    // The one instance of the process. It is never destroyed: objects that die while the process ends may
    // still unsubscribe.
    [[nodiscard]] static CDAEBrowserAPIWK* GetInstance();

    // Events arrive in the main context that is the thread's default now.
    CDAEBrowserAPIWK();
    ~CDAEBrowserAPIWK() override;
    CDAEBrowserAPIWK(const CDAEBrowserAPIWK&) = delete;
    CDAEBrowserAPIWK& operator=(const CDAEBrowserAPIWK&) = delete;

    void SetProfileSupport(uint16_t profile, uint8_t major, uint8_t minor, uint8_t micro) const override;
    [[nodiscard]] bool IsProfileSupported(uint16_t profile, uint8_t major, uint8_t minor,
                                          uint8_t micro) const override;
    [[nodiscard]] std::string GetXmlCapabilities() const override;
    [[nodiscard]] bool HasCapability(const std::string& capability) override;
    [[nodiscard]] bool CurrentChannel(uint32_t& id) override;
    void GetChannelList(std::list<uint32_t>& ids) override;
    void GetPreferredAudioLang(std::string& languages) override;
    void GetPreferredSubtitleLang(std::string& languages) override;
    void GetPreferredUILang(std::string& languages) override;
    [[nodiscard]] bool CreateApplication(const std::string& url, int viewId) override;
    void DestroyApplication(int viewId) override;
    void Show(int viewId) override;
    void Hide(int viewId) override;
    [[nodiscard]] bool IsBroadcastRelated() override;
    [[nodiscard]] bool IsTrusted() override;
    [[nodiscard]] bool IsURLInAppBoundary(const std::string& url) override;
    void SetKeyMask(int mask) override;
    [[nodiscard]] uint32_t GetKeyMask() override;
    [[nodiscard]] uint32_t GetMaxKeyMask() override;
    [[nodiscard]] std::vector<std::string> GetProgramDescriptors(uint32_t id, uint16_t eventId, int tag,
                                                                 int tagExtension, int privateData) override;
    [[nodiscard]] std::unique_ptr<IProgrammeCollection> GetProgCollection(uint32_t id) override;
    [[nodiscard]] bool GetChannelsAndEventFromUrl(const std::string& url, std::vector<uint32_t>& channelIds,
                                                  uint16_t& eventId) const override;
    [[nodiscard]] int GetParentalLockStatus() override;
    [[nodiscard]] int GetDvbsiParentalLockMaxVal() override;
    [[nodiscard]] int GetDvbsiParentalLockMinVal() override;
    void GetCIPlusDrmType(std::string& drmTypes) const override;
    [[nodiscard]] bool IsSASSessionOpen() override;
    void SendDRMMessage(int& transactionId, std::string msgType, std::string msg,
                        std::string DRMSystemID) override;
    void GetCountryID(std::string& country) const override;
    [[nodiscard]] bool GetTime(unsigned long& utc, int& offset) const override;
    [[nodiscard]] TDSMCCJobId StreamEventSubscribe(const char* url, const char* name) override;
    bool StreamEventUnsubscribe(TDSMCCJobId id) override;
    void SendStreamEventUnsubscribe(TDSMCCJobId id) override;
    [[nodiscard]] uint64_t Life() const override;

    void SubscribeEvents(IPluginController* controller) override;
    void UnsubscribeEvents(IPluginController* controller) override;

    // Deliver to every subscriber. What is pointed to is not kept.
    void SendEventToPlugins(event_t event);
    void SendSASDataToPlugins(const uint8_t* bytes, size_t length);
    void SendPlayReadyDataToPlugins(const IPRResponse* response);

 private:
    void OnSubscriptionsLost();

    PluginSubscribers m_subscribers;
    std::unique_ptr<DBusService<_IDAEBrowserAPI>> m_service;
    size_t m_streamEvents = 0;  // subscriptions of this life of the receiver
};
