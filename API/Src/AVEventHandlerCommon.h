// The broadband media player of the receiver. Each A/V control object names itself by its plugin id.
//
// Every operation blocks until the receiver has answered. One that fails has logged why and gives false; its
// out-parameters are then untouched. State changes come back as E_AVC_* events.
#pragma once

#include <cstdint>
#include <string>

#include "API/Src/IAVComponent.h"

class IAVEventHandlerCommon {
 public:
    IAVEventHandlerCommon() = default;
    IAVEventHandlerCommon(const IAVEventHandlerCommon&) = delete;
    IAVEventHandlerCommon& operator=(const IAVEventHandlerCommon&) = delete;
    virtual ~IAVEventHandlerCommon();

    [[nodiscard]] virtual bool FlagPlayerActive(uint32_t pluginId) = 0;
    [[nodiscard]] virtual bool FlagPlayerPlaying(uint32_t pluginId) = 0;
    [[nodiscard]] virtual bool IsAVPlayerAlive(uint32_t pluginId) = 0;
    [[nodiscard]] virtual bool GetPlayer(uint32_t pluginId) = 0;
    virtual bool Play(uint32_t pluginId, float speed) = 0;
    virtual bool Stop(uint32_t pluginId) = 0;
    virtual bool Seek(uint32_t pluginId, long position) = 0;  // milliseconds
    virtual bool Queue(uint32_t pluginId, const std::string& url) = 0;
    virtual void ReleasePlayer(uint32_t pluginId) = 0;
    // The same, and nobody waits for them: for an object that is collected.
    virtual void SendStop(uint32_t pluginId) = 0;
    virtual void SendReleasePlayer(uint32_t pluginId) = 0;
    [[nodiscard]] virtual bool CheckMimeType(const std::string& mimetype) = 0;
    virtual bool SetMimeType(uint32_t pluginId, const std::string& mimetype) = 0;
    virtual bool ChangeMimeType(uint32_t pluginId, const std::string& mimetype) = 0;
    virtual void SetAttribute(uint32_t pluginId, const std::string& name, const std::string& value) = 0;
    virtual void GetMimeType(uint32_t pluginId, std::string& mimetype) = 0;
    virtual void SetData(uint32_t pluginId, const std::string& url) = 0;
    virtual void GetData(uint32_t pluginId, std::string& url) = 0;
    virtual void UpdateLayout(uint32_t pluginId, uint32_t x, uint32_t y, uint32_t width, uint32_t height,
                              bool fullscreen) = 0;
    virtual void SetLocation(uint32_t pluginId, const std::string& docLocation) = 0;
    virtual void GetPlayState(uint32_t pluginId, int& state) = 0;
    virtual void GetPlayPosition(uint32_t pluginId, unsigned long& position) = 0;  // milliseconds
    virtual void GetPlayTime(uint32_t pluginId, unsigned long& time) = 0;          // milliseconds
    virtual void GetSpeed(uint32_t pluginId, float& speed) = 0;
    virtual bool SetVolume(uint32_t pluginId, int volume) = 0;
    // The volume that goes in is only logged.
    virtual bool GetVolume(uint32_t pluginId, int& volume) = 0;
    virtual void GetNrTracks(uint32_t pluginId, int& tracks) = 0;
    virtual void GetCurrentTrack(uint32_t pluginId, int& track) = 0;
    virtual void GetError(uint32_t pluginId, int& error) = 0;
    // The records are appended.
    virtual void GetVideoComponents(uint32_t pluginId, AVComponentVector& components, bool active) = 0;
    virtual void GetAudioComponents(uint32_t pluginId, AVComponentVector& components, bool active) = 0;
    virtual void GetSbtComponents(uint32_t pluginId, AVComponentVector& components, bool active) = 0;
    // The index 0xFFFFFFFF stands for any component of the type.
    virtual void SelectComponent(uint32_t pluginId, int type, uint32_t index) = 0;
    virtual void UnselectComponent(uint32_t pluginId, int type, uint32_t index) = 0;
};
