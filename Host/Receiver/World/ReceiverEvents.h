// What the world tells: the signals of the product's interfaces, to one caller or to all, and those of the
// control interface.
#pragma once

#include <compare>
#include <cstdint>
#include <string>
#include <vector>

namespace Receiver {

// Event codes of the video/broadcast and A/V players.
namespace Event {
inline constexpr std::int32_t ChannelChange = 100;
inline constexpr std::int32_t BroadcastState = 101;
inline constexpr std::int32_t BroadcastParentalRating = 106;
inline constexpr std::int32_t BroadcastComponentSelect = 108;
inline constexpr std::int32_t MediaState = 200;
inline constexpr std::int32_t MediaSpeed = 201;
inline constexpr std::int32_t MediaPosition = 202;
inline constexpr std::int32_t MediaComponentSelect = 206;
inline constexpr std::int32_t ApplicationLoadError = 401;
inline constexpr std::int32_t SasSession = 1000;
}  // namespace Event

// The second value of a channel-change or play-state event when nothing went wrong.
inline constexpr std::int32_t NoError = 1000;

// Where on the screen a page wants its picture.
struct VideoWindow {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool fullScreen = false;

    [[nodiscard]] bool isSomewhere() const { return fullScreen || (width > 0 && height > 0); }
    [[nodiscard]] bool operator==(const VideoWindow&) const = default;
};

// A client of the bus that asks something of the receiver, by its unique name.
using CallerName = std::string;
// Whom a signal goes to that concerns all of them.
inline const CallerName Everybody;

// Every caller counts the plugin ids of its players from 1, for both kinds.
enum class PlaneKind { Broadcast, Broadband };

struct PlanePlayer {
    PlaneKind kind = PlaneKind::Broadcast;
    CallerName caller;
    std::uint32_t pluginId = 0;

    [[nodiscard]] auto operator<=>(const PlanePlayer&) const = default;
};

// What fills a player's window on the video plane; PlaneNames.h names them in this order.
enum class PlanePicture {
    None,    // nothing yet
    Card,    // a test card with the title
    Audio,   // there is only something to hear
    Frames,  // what the player decodes
};

struct PlaneContent {
    VideoWindow window;
    std::string title;
    PlanePicture picture = PlanePicture::None;
    std::string subtitles;  // in lines; empty when there are none now

    [[nodiscard]] bool operator==(const PlaneContent&) const = default;
};

// The channel that runs behind the applications; without a name there is none.
struct RunningChannel {
    std::string name;
    PlanePicture picture = PlanePicture::None;

    [[nodiscard]] bool operator==(const RunningChannel&) const = default;
};

class ReceiverEvents {
 public:
    virtual ~ReceiverEvents() = default;

    virtual void pluginEvent(const CallerName& to, std::int32_t event, std::uint32_t pluginId) = 0;
    virtual void pluginEventUnsigned(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                                     std::uint32_t value) = 0;
    virtual void pluginEventSigned(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                                   std::int32_t value) = 0;
    virtual void pluginEventFloat(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                                  double value) = 0;
    virtual void pluginEventData(const CallerName& to, std::int32_t event, std::uint32_t pluginId,
                                 std::int32_t first, std::int32_t second) = 0;
    virtual void streamEvent(const CallerName& to, std::uint32_t status, std::int16_t eventId,
                             const std::string& name, const std::vector<std::uint8_t>& data,
                             std::uint32_t jobId) = 0;
    virtual void playReadyResponse(const CallerName& to, std::uint32_t transactionId, std::int32_t resultCode,
                                   const std::string& message) = 0;
    virtual void fileResponse(const CallerName& to, std::uint32_t handle, const std::string& url,
                              const std::vector<std::uint8_t>& data, bool status) = 0;

    virtual void planeShown(const PlanePlayer& player, const PlaneContent& content) = 0;
    virtual void planeHidden(const PlanePlayer& player) = 0;
    virtual void runningChannelChanged(const RunningChannel& channel) = 0;
    virtual void applicationStarted(std::int32_t viewId, const std::string& url) = 0;
    virtual void applicationDestroyed(std::int32_t viewId) = 0;
    virtual void applicationVisibilityChanged(std::int32_t viewId, bool visible) = 0;
    virtual void keyMaskChanged(std::uint32_t mask) = 0;
    virtual void keyPressed(std::uint32_t keyCode) = 0;
};

}  // namespace Receiver
