// The client of org.vantrel.hbbtv.IAVEventHandler.
#pragma once

#include <memory>
#include <string>

#include "API/Src/AVEventHandlerCommon.h"

template <typename Proxy>
class DBusService;
struct _IAVEventHandler;

class CAVEventHandlerWK final : public IAVEventHandlerCommon {
 public:
    // The one instance of the process, destroyed when the process exits.
    [[nodiscard]] static CAVEventHandlerWK* GetInstance();

    CAVEventHandlerWK();
    ~CAVEventHandlerWK() override;

    [[nodiscard]] bool FlagPlayerActive(uint32_t pluginId) override;
    [[nodiscard]] bool FlagPlayerPlaying(uint32_t pluginId) override;
    [[nodiscard]] bool IsAVPlayerAlive(uint32_t pluginId) override;
    [[nodiscard]] bool GetPlayer(uint32_t pluginId) override;
    bool Play(uint32_t pluginId, float speed) override;
    bool Stop(uint32_t pluginId) override;
    bool Seek(uint32_t pluginId, long position) override;
    bool Queue(uint32_t pluginId, const std::string& url) override;
    void ReleasePlayer(uint32_t pluginId) override;
    void SendStop(uint32_t pluginId) override;
    void SendReleasePlayer(uint32_t pluginId) override;
    [[nodiscard]] bool CheckMimeType(const std::string& mimetype) override;
    bool SetMimeType(uint32_t pluginId, const std::string& mimetype) override;
    bool ChangeMimeType(uint32_t pluginId, const std::string& mimetype) override;
    void SetAttribute(uint32_t pluginId, const std::string& name, const std::string& value) override;
    void GetMimeType(uint32_t pluginId, std::string& mimetype) override;
    void SetData(uint32_t pluginId, const std::string& url) override;
    void GetData(uint32_t pluginId, std::string& url) override;
    void UpdateLayout(uint32_t pluginId, uint32_t x, uint32_t y, uint32_t width, uint32_t height,
                      bool fullscreen) override;
    void SetLocation(uint32_t pluginId, const std::string& docLocation) override;
    void GetPlayState(uint32_t pluginId, int& state) override;
    void GetPlayPosition(uint32_t pluginId, unsigned long& position) override;
    void GetPlayTime(uint32_t pluginId, unsigned long& time) override;
    void GetSpeed(uint32_t pluginId, float& speed) override;
    bool SetVolume(uint32_t pluginId, int volume) override;
    bool GetVolume(uint32_t pluginId, int& volume) override;
    void GetNrTracks(uint32_t pluginId, int& tracks) override;
    void GetCurrentTrack(uint32_t pluginId, int& track) override;
    void GetError(uint32_t pluginId, int& error) override;
    void GetVideoComponents(uint32_t pluginId, AVComponentVector& components, bool active) override;
    void GetAudioComponents(uint32_t pluginId, AVComponentVector& components, bool active) override;
    void GetSbtComponents(uint32_t pluginId, AVComponentVector& components, bool active) override;
    void SelectComponent(uint32_t pluginId, int type, uint32_t index) override;
    void UnselectComponent(uint32_t pluginId, int type, uint32_t index) override;

 private:
    std::unique_ptr<DBusService<_IAVEventHandler>> m_service;
};
