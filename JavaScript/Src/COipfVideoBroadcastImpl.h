// Live television as a page sees it. Everything a page asks for here is a request to the receiver, whose
// answer comes back as an event.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "API/Src/IPluginController.h"
#include "InjectedBundle/gen/js/COipfVideoBroadcastBase.h"
#include "JavaScript/Src/AttributeMap.h"
#include "JavaScript/Src/StreamEventHandler.h"

class IBroadcastPlayerCommon;

namespace OipfJavaScript {

class jiAVComponent;
class jiChannel;
class jiChannelConfig;
class jiProgrammeCollection;

class COipfVideoBroadcastImpl final : public COipfVideoBroadcastBase, public IPluginController {
 public:
    COipfVideoBroadcastImpl();
    // Neither stops nor releases the player: what is presented goes on.
    ~COipfVideoBroadcastImpl() override;

    [[nodiscard]] uint32_t GetWidth() const { return m_window.width; }
    void SetWidth(uint32_t width) { m_window.width = width; }
    [[nodiscard]] uint32_t GetHeight() const { return m_window.height; }
    void SetHeight(uint32_t height) { m_window.height = height; }
    [[nodiscard]] bool GetFullScreen() const { return m_fullScreen; }
    [[nodiscard]] int32_t GetPlayState() const { return m_playState; }
    void SetPlayState(int32_t state) { m_playState = state; }
    [[nodiscard]] std::unique_ptr<jiChannel> GetCurrentChannel();
    [[nodiscard]] std::unique_ptr<jiProgrammeCollection> GetProgrammes();

    [[nodiscard]] std::unique_ptr<jiChannelConfig> GetChannelConfig();
    void BindToCurrentChannel();
    [[nodiscard]] JSValueRef customCreateChannelObject(const CallArguments& call);
    [[nodiscard]] JSValueRef customSetChannel(const CallArguments& call);
    void PrevChannel();
    void NextChannel();
    void SetFullScreen(bool fullscreen);
    void Release();
    void Stop();
    [[nodiscard]] JSValueRef customGetComponents(const CallArguments& call);
    [[nodiscard]] JSValueRef customGetCurrentActiveComponents(const CallArguments& call);
    void SelectComponent(jiAVComponent* component);
    void SelectComponent(int32_t componentType);
    void UnselectComponent(jiAVComponent* component);
    void UnselectComponent(int32_t componentType);
    [[nodiscard]] JSValueRef customAddStreamEventListener(const CallArguments& call);
    [[nodiscard]] JSValueRef customRemoveStreamEventListener(const CallArguments& call);
    void SetMimeType(const std::string& type);
    [[nodiscard]] JSValueRef customSetAttributes(const CallArguments& call);
    void SetAttributes(const AttributeMap& attributes);
    void SetWindow(uint32_t x, uint32_t y, uint32_t width, uint32_t height);

    void OnEvent(event_t event) override;

 private:
    struct Window {
        uint32_t width = 0;
        uint32_t height = 0;
        uint32_t x = 0;
        uint32_t y = 0;
        bool operator==(const Window&) const = default;
    };

    [[nodiscard]] JSValueRef commonGetComponents(const CallArguments& call, bool activeOnly);
    // Whether the application belongs to a broadcast; for those that do not, most of this object is out of
    // bounds.
    [[nodiscard]] bool IsBroadcastRelated() const;
    void UpdateLayout();

    void OnChannelChange(const event_t& event);
    void OnStateChange(const event_t& event);
    void OnStreamEvent(const CDSMCCStreamEventData* record);
    void OnParentalRating(const event_t& event);
    void OnComponentSelect(const event_t& event);

    static inline uint32_t s_instance_id = 0;
    static inline uint32_t streamId = 0;

    Window m_window;
    bool m_fullScreen = false;
    int32_t m_playState = 0;
    // What the player knows: a width or height that the page writes does not reach it by itself.
    Window m_shownWindow;
    IBroadcastPlayerCommon* m_player;
    std::unique_ptr<CStreamEventHandler> m_streamEvents;
    uint32_t m_instanceId;
};

}  // namespace OipfJavaScript
