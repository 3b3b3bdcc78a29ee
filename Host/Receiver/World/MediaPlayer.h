// What plays one medium: the simulated player by the clock, the real one by decoding it.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Host/Picture/SharedMemory.h"
#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

enum class MediaState {
    Stopped = 0,
    Playing = 1,
    Paused = 2,
    Connecting = 3,
    Buffering = 4,
    Finished = 5,
    Error = 6
};

[[nodiscard]] inline bool isRolling(MediaState state) {
    return state == MediaState::Playing || state == MediaState::Paused || state == MediaState::Buffering;
}
[[nodiscard]] inline bool isOver(MediaState state) {
    return state == MediaState::Finished || state == MediaState::Error;
}

// Why a medium does not play, as the state event says it.
namespace MediaError {
inline constexpr std::int32_t UnsupportedFormat = 0;
inline constexpr std::int32_t CannotConnect = 1;  // or the connection was lost
inline constexpr std::int32_t Unidentified = 2;
inline constexpr std::int32_t InsufficientResources = 3;
inline constexpr std::int32_t Corrupt = 4;
inline constexpr std::int32_t ContentNotAvailable = 5;
inline constexpr std::int32_t PositionNotAvailable = 6;
}  // namespace MediaError

class MediaListener {
 public:
    virtual ~MediaListener() = default;

    virtual void mediaStateChanged(MediaState state, std::int32_t error) = 0;
    virtual void mediaSpeedChanged(double speed) = 0;
    virtual void mediaPositionChanged(std::uint32_t milliseconds) = 0;
    // The medium's components have become known, or are others now.
    virtual void mediaComponentsChanged() = 0;
};

// Where a player that decodes shows its pictures.
class PictureSink {
 public:
    virtual ~PictureSink() = default;

    // There are pictures in this memory, which a PictureView opens.
    virtual void show(Host::Descriptor memory) = 0;
    // There are none any more.
    virtual void clear() = 0;
    // What is to be read over them, in lines.
    virtual void subtitle(const std::string& text) = 0;
};

class MediaPlayer {
 public:
    virtual ~MediaPlayer() = default;

    // Takes another medium; what played before is stopped.
    virtual void load(const std::string& url) = 0;
    // Speed 0 pauses. False where the medium cannot be played so.
    [[nodiscard]] virtual bool play(double speed) = 0;
    virtual void stop() = 0;
    // False while nothing plays and behind the end.
    [[nodiscard]] virtual bool seek(std::uint32_t milliseconds) = 0;

    [[nodiscard]] virtual MediaState state() const = 0;
    [[nodiscard]] virtual std::uint32_t position() const = 0;  // milliseconds
    [[nodiscard]] virtual std::uint32_t duration()
        const = 0;  // milliseconds; 0 while unknown, or without end
    [[nodiscard]] virtual double speed() const = 0;
    [[nodiscard]] virtual std::vector<Component> components() const = 0;

    // Presents these of its components and no other ones.
    virtual void present(const std::vector<Component>& active) = 0;
    // 0 to 100.
    virtual void setVolume(std::int32_t volume) = 0;
    // Of one that only acts as if it played there are no frames: a test card stands in for them.
    [[nodiscard]] virtual bool givesFrames() const { return true; }
};

using MediaPlayerFactory = std::function<std::unique_ptr<MediaPlayer>(MediaListener&, PictureSink&)>;

}  // namespace Receiver
