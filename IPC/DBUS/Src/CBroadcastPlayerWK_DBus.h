// The client of org.vantrel.hbbtv.IBroadcastPlayer.
#pragma once

#include <memory>
#include <string>

#include "API/Src/IBroadcastPlayerCommon.h"

template <typename Proxy>
class DBusService;
struct _IBroadcastPlayer;

class CBroadcastPlayerWK final : public IBroadcastPlayerCommon {
 public:
    // The one instance of the process, never destroyed. The first call is to be made on the main thread.
    [[nodiscard]] static CBroadcastPlayerWK* GetInstance();

    CBroadcastPlayerWK();
    ~CBroadcastPlayerWK() override;
    CBroadcastPlayerWK(const CBroadcastPlayerWK&) = delete;
    CBroadcastPlayerWK& operator=(const CBroadcastPlayerWK&) = delete;

    bool BindToCurrentChannel(uint32_t pluginId) override;
    bool SetChannel(uint32_t pluginId, EOipfChIdType type, const std::string& dsd, int onid, int tsid,
                    int sid, uint32_t& id) override;
    bool NextOrPrevChannel(uint32_t pluginId, bool next, std::string& exception) override;
    void SetNullChannel(uint32_t pluginId, bool setBroadcastIndependentApp) override;
    void Release(uint32_t pluginId) override;
    void Stop(uint32_t pluginId) override;
    void SendRelease(uint32_t pluginId) override;
    void SendStop(uint32_t pluginId) override;
    [[nodiscard]] bool IsPresenting(uint32_t pluginId) override;
    void GetPlayState(uint32_t pluginId, int& state) override;
    [[nodiscard]] bool GetChannel(uint32_t pluginId, uint32_t& id) override;
    void SetVolume(uint32_t pluginId, int volume) override;
    void GetVolume(uint32_t pluginId, int& volume) override;
    void GetVideoComponents(uint32_t pluginId, AVComponentVector& components, bool active) override;
    void GetAudioComponents(uint32_t pluginId, AVComponentVector& components, bool active) override;
    void GetSbtComponents(uint32_t pluginId, AVComponentVector& components, bool active) override;
    void SelectComponent(uint32_t pluginId, int type, uint32_t index) override;
    void UnselectComponent(uint32_t pluginId, int type, uint32_t index) override;
    void UpdateLayout(uint32_t pluginId, uint32_t x, uint32_t y, uint32_t width, uint32_t height,
                      bool fullscreen) override;

 private:
    std::unique_ptr<DBusService<_IBroadcastPlayer>> m_service;
};
