// Live television as a page sees it. Everything a page asks for here is a request to the receiver, whose
// answer comes back as an event.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "API/Src/IBroadcastPlayerCommon.h"
#include "InjectedBundle/gen/js/COipfVideoBroadcastBase.h"
#include "JavaScript/Src/PlayerObject.h"
#include "JavaScript/Src/StreamEventHandler.h"

namespace OipfJavaScript {

class jiChannel;
class jiChannelConfig;
class jiProgrammeCollection;

class COipfVideoBroadcastImpl final
    : public PlayerObject<jiOipfVideoBroadcast, COipfVideoBroadcastBase, IBroadcastPlayerCommon> {
 public:
    explicit COipfVideoBroadcastImpl(JSContextRef context);
    // Gives its player back: nobody can any more.
    ~COipfVideoBroadcastImpl() override;

    void SetWidth(uint32_t width) { m_window.width = width; }
    void SetHeight(uint32_t height) { m_window.height = height; }
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
    [[nodiscard]] JSValueRef customAddStreamEventListener(const CallArguments& call);
    [[nodiscard]] JSValueRef customRemoveStreamEventListener(const CallArguments& call);
    void SetMimeType(const std::string& type);
    void SetAttributes(const AttributeMap& attributes) override;

    void OnEvent(event_t event) override;

 private:
    // Whether the application belongs to a broadcast; for those that do not, most of this object is out of
    // bounds.
    [[nodiscard]] bool IsBroadcastRelated() const;
    void ReleaseHeldPlayer() override;
    // Its triggers are heard by nobody any more.
    void OnPageLeft() override;

    void OnChannelChange(const event_t& event);
    void OnStateChange(const event_t& event);
    void OnStreamEvent(const CDSMCCStreamEventData* record);
    void OnParentalRating(const event_t& event);

    static inline uint32_t s_instance_id = 0;
    static inline uint32_t streamId = 0;

    int32_t m_playState = 0;
    std::unique_ptr<CStreamEventHandler> m_streamEvents;
};

}  // namespace OipfJavaScript
