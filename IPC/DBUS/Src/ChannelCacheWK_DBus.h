// The client of org.vantrel.hbbtv.IJSChannelCache.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "API/Src/IJSChannelCacheCommon.h"

template <typename Proxy>
class DBusService;
struct _IJSChannelCache;

class CJSChannelCacheWK final : public IJSChannelCacheCommon {
 public:
    CJSChannelCacheWK();
    ~CJSChannelCacheWK() override;
    CJSChannelCacheWK(const CJSChannelCacheWK&) = delete;
    CJSChannelCacheWK& operator=(const CJSChannelCacheWK&) = delete;

    bool Retain(uint32_t id) override {
        return RetainWhile(id, [] {});
    }
    bool RetainWhile(uint32_t id, const std::function<void()>& meanwhile) override;
    void Release(uint32_t id) override;
    [[nodiscard]] uint64_t Life() const override;
    bool GetChannelInfo(uint32_t id, std::string* name, std::string* longName, std::string* description,
                        uint32_t* idType, uint32_t* nid, uint32_t* onid, uint32_t* tsid, uint32_t* sid,
                        bool* chType, std::string* ccid, bool* authorised, bool* hidden, bool* locked,
                        bool* manualBlock, uint32_t* maxBitRate, std::string* ipBroadcastId,
                        uint32_t* majorChannel) override;

 private:
    std::unique_ptr<DBusService<_IJSChannelCache>> m_service;
};

class IJSChannelCacheWK {
 public:
    IJSChannelCacheWK() = delete;

    // The one client of the process, destroyed when the process exits.
    [[nodiscard]] static IJSChannelCacheCommon* GetInstance();
};
