// The live-television player of the receiver. Each video/broadcast object names itself by its plugin id.
//
// Every operation blocks until the receiver has answered. One that fails has logged why and gives false; its
// out-parameters are then untouched. State changes come back as E_VBO_* events.
#pragma once

#include <cstdint>
#include <string>

#include "API/Src/IAVComponent.h"

enum EOipfChIdType : uint32_t {
    ID_ANALOG = 0,
    ID_DVB_C = 10,
    ID_DVB_S = 11,
    ID_DVB_T = 12,
    ID_DVB_SI_DIRECT = 13,
    ID_DVB_C2 = 14,
    ID_DVB_S2 = 15,
    ID_DVB_T2 = 16,
    ID_ISDB_C = 20,
    ID_ISDB_S = 20,  // pages of the platform compare against this very value
    ID_ISDB_T = 21,
    ID_ATSC_T = 30,
    ID_IPTV_SDS = 40,
    ID_IPTV_URI = 41,
};

enum EOipfChannelType : uint32_t {
    TYPE_TV = 0,
    TYPE_RADIO = 1,
    TYPE_OTHER = 2,
};

class IBroadcastPlayerCommon {
 public:
    virtual ~IBroadcastPlayerCommon() = default;

    // The name of an E_VBO_* event, for the log.
    [[nodiscard]] static const char* EventName(int32_t event);

    virtual bool BindToCurrentChannel(uint32_t pluginId) = 0;
    // The identifier in the channel cache goes in and comes back, perhaps as another one.
    virtual bool SetChannel(uint32_t pluginId, EOipfChIdType type, const std::string& dsd, int onid, int tsid,
                            int sid, uint32_t& id) = 0;
    virtual bool NextOrPrevChannel(uint32_t pluginId, bool next, std::string& exception) = 0;
    virtual void SetNullChannel(uint32_t pluginId, bool setBroadcastIndependentApp) = 0;
    virtual void Release(uint32_t pluginId) = 0;
    virtual void Stop(uint32_t pluginId) = 0;
    // The same, and nobody waits for them: for an object that is collected.
    virtual void SendRelease(uint32_t pluginId) = 0;
    virtual void SendStop(uint32_t pluginId) = 0;
    [[nodiscard]] virtual bool IsPresenting(uint32_t pluginId) = 0;
    virtual void GetPlayState(uint32_t pluginId, int& state) = 0;
    [[nodiscard]] virtual bool GetChannel(uint32_t pluginId, uint32_t& id) = 0;
    virtual void SetVolume(uint32_t pluginId, int volume) = 0;
    virtual void GetVolume(uint32_t pluginId, int& volume) = 0;
    // The records are appended.
    virtual void GetVideoComponents(uint32_t pluginId, AVComponentVector& components, bool active) = 0;
    virtual void GetAudioComponents(uint32_t pluginId, AVComponentVector& components, bool active) = 0;
    virtual void GetSbtComponents(uint32_t pluginId, AVComponentVector& components, bool active) = 0;
    // The index 0xFFFFFFFF stands for any component of the type.
    virtual void SelectComponent(uint32_t pluginId, int type, uint32_t index) = 0;
    virtual void UnselectComponent(uint32_t pluginId, int type, uint32_t index) = 0;
    virtual void UpdateLayout(uint32_t pluginId, uint32_t x, uint32_t y, uint32_t width, uint32_t height,
                              bool fullscreen) = 0;
};
