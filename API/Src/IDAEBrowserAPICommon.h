// Everything an object asks of the receiver that is not player control, and the subscription to its events.
//
// Every operation blocks until the receiver has answered. One that fails has logged why and gives false, 0,
// an empty result or null; its out-parameters are then untouched.
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <vector>

#include "API/Src/CDSMCCStreamEventData.h"
#include "API/Src/IProgrammeCollection.h"

class IPluginController;

class IDAEBrowserAPICommon {
 public:
    virtual ~IDAEBrowserAPICommon() = default;

    // Capabilities and profiles.
    virtual void SetProfileSupport(uint16_t profile, uint8_t major, uint8_t minor, uint8_t micro) const = 0;
    [[nodiscard]] virtual bool IsProfileSupported(uint16_t profile, uint8_t major, uint8_t minor,
                                                  uint8_t micro) const = 0;
    [[nodiscard]] virtual std::string GetXmlCapabilities() const = 0;
    [[nodiscard]] virtual bool HasCapability(const std::string& capability) = 0;

    // Channels are named by their identifier in the channel cache. The list is appended to.
    [[nodiscard]] virtual bool CurrentChannel(uint32_t& id) = 0;
    virtual void GetChannelList(std::list<uint32_t>& ids) = 0;

    // Comma-separated ISO 639 codes, most preferred first.
    virtual void GetPreferredAudioLang(std::string& languages) = 0;
    virtual void GetPreferredSubtitleLang(std::string& languages) = 0;
    virtual void GetPreferredUILang(std::string& languages) = 0;

    // Applications, named by the browser view they run in.
    [[nodiscard]] virtual bool CreateApplication(const std::string& url, int viewId) = 0;
    virtual void DestroyApplication(int viewId) = 0;
    virtual void Show(int viewId) = 0;
    virtual void Hide(int viewId) = 0;
    [[nodiscard]] virtual bool IsBroadcastRelated() = 0;
    [[nodiscard]] virtual bool IsTrusted() = 0;
    [[nodiscard]] virtual bool IsURLInAppBoundary(const std::string& url) = 0;

    // Key masks: the bits of the Keyset constants.
    virtual void SetKeyMask(int mask) = 0;
    [[nodiscard]] virtual uint32_t GetKeyMask() = 0;
    [[nodiscard]] virtual uint32_t GetMaxKeyMask() = 0;

    // Programmes. A descriptor is a byte string and may hold NULs.
    [[nodiscard]] virtual std::vector<std::string> GetProgramDescriptors(uint32_t id, uint16_t eventId,
                                                                         int tag, int tagExtension,
                                                                         int privateData) = 0;
    [[nodiscard]] virtual std::unique_ptr<IProgrammeCollection> GetProgCollection(uint32_t id) = 0;
    // The channel identifiers are appended.
    [[nodiscard]] virtual bool GetChannelsAndEventFromUrl(const std::string& url,
                                                          std::vector<uint32_t>& channelIds,
                                                          uint16_t& eventId) const = 0;

    // Parental lock.
    [[nodiscard]] virtual int GetParentalLockStatus() = 0;
    [[nodiscard]] virtual int GetDvbsiParentalLockMaxVal() = 0;
    [[nodiscard]] virtual int GetDvbsiParentalLockMinVal() = 0;

    // CI Plus and DRM.
    virtual void GetCIPlusDrmType(std::string& drmTypes) const = 0;
    [[nodiscard]] virtual bool IsSASSessionOpen() = 0;
    virtual void SendDRMMessage(int& transactionId, std::string msgType, std::string msg,
                                std::string DRMSystemID) = 0;

    virtual void GetCountryID(std::string& country) const = 0;
    [[nodiscard]] virtual bool GetTime(unsigned long& utc, int& offset) const = 0;

    // A subscription of 0 means that it was refused.
    [[nodiscard]] virtual TDSMCCJobId StreamEventSubscribe(const char* url, const char* name) = 0;
    virtual bool StreamEventUnsubscribe(TDSMCCJobId id) = 0;
    // The same, and nobody waits for it: for an object that is collected.
    virtual void SendStreamEventUnsubscribe(TDSMCCJobId id) = 0;
    // Changes when the receiver goes, and all subscriptions with it.
    [[nodiscard]] virtual uint64_t Life() const = 0;

    // Subscribers are not owned; each unsubscribes before it is destroyed. Both may be called while an event
    // is being delivered: who is removed then is not called any more, who is added hears the next event.
    virtual void SubscribeEvents(IPluginController* controller) = 0;
    virtual void UnsubscribeEvents(IPluginController* controller) = 0;
};
