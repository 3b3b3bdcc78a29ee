// Media from the network as a page sees it. The receiver's player does all the work; the states that it
// reports come back as events and are what the page reads.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "API/Src/AVEventHandlerCommon.h"
#include "InjectedBundle/gen/js/COipfAVControlBase.h"
#include "JavaScript/Src/PlayerObject.h"

class SASMessage;

namespace OipfJavaScript {

class COipfAVControlImpl final
    : public PlayerObject<jiOipfAVControl, COipfAVControlBase, IAVEventHandlerCommon> {
 public:
    explicit COipfAVControlImpl(JSContextRef context);
    // Gives its player back: nobody can stop any more what it plays.
    ~COipfAVControlImpl() override;

    void setCustomWidth(JSContextRef context, JSValueRef value, JSValueRef*) {
        Resize(context, value, "Width", m_window.width);
    }
    void setCustomHeight(JSContextRef context, JSValueRef value, JSValueRef*) {
        Resize(context, value, "Height", m_window.height);
    }
    [[nodiscard]] std::string GetType() const;
    void setCustomType(JSContextRef context, JSValueRef value, JSValueRef* exception);
    [[nodiscard]] const std::string& GetData() const { return m_data; }
    void setCustomData(JSContextRef context, JSValueRef value, JSValueRef* exception);
    [[nodiscard]] int64_t GetPlayPosition() const;
    [[nodiscard]] int64_t GetPlayTime() const;
    [[nodiscard]] int32_t GetPlayState() const { return m_playState; }
    [[nodiscard]] int32_t GetError() const { return m_error; }
    [[nodiscard]] double GetSpeed() const;
    [[nodiscard]] int32_t GetNrTracks() const;
    [[nodiscard]] int32_t GetCurrentTrackIndex() const;
    void SetCurrentTrackIndex(int32_t) {}

    [[nodiscard]] bool Play(JSContextRef context, double speed);
    [[nodiscard]] bool Stop();
    [[nodiscard]] bool Seek(int32_t position);
    [[nodiscard]] bool SetVolume(int32_t volume);
    [[nodiscard]] bool Next() const { return false; }
    [[nodiscard]] bool Previous() const { return false; }
    [[nodiscard]] std::string GetSinkProtocolInfo() const { return {}; }
    [[nodiscard]] std::string GetTransportStateVariables() const { return {}; }
    [[nodiscard]] std::string SetTransportStateVariables() const { return {}; }
    void SetFullScreen(bool fullscreen) { ChangeFullScreen(fullscreen); }
    [[nodiscard]] bool Queue(JSContextRef context, const std::optional<std::string>& url);
    void SetMimeType(const std::string& type);
    // Keeps them for the next time that a player is set up.
    void SetAttributes(const AttributeMap& attributes) override;
    [[nodiscard]] bool Release();

    void OnEvent(event_t event) override;

 private:
    // As the receiver reports them.
    enum EPlayState : int32_t { kStopped = 0, kPlaying = 1, kPaused = 2, kFinished = 5, kError = 6 };

    [[nodiscard]] bool HasProgress() const { return m_playState == kPlaying || m_playState == kPaused; }
    void Resize(JSContextRef context, JSValueRef value, const char* dimension, uint32_t& length);
    // False when the size is the screen's, not the page's.
    [[nodiscard]] bool MayResize(const char* dimension);
    // False when the receiver has no player to give; the page has then been told.
    [[nodiscard]] bool AcquirePlayer();
    void SendAttributes();
    void Start(float speed);
    void ReleaseHeldPlayer() override;

    void OnState(const event_t& event);
    void OnSpeed(const event_t& event);
    void OnPosition(const event_t& event);
    void OnDrmError(const event_t& event);
    void OnSASMessage(const SASMessage* message);

    static inline uint32_t s_idGen = 0;

    std::string m_type;
    std::string m_data;
    AttributeMap m_attributes;
    int32_t m_playState = kStopped;
    int32_t m_error = 0;
    // As last reported: what counts while the player does not answer.
    float m_speed = 0;
    int64_t m_playPosition = 0;
};

}  // namespace OipfJavaScript
