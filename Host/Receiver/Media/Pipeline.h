// One GStreamer pipeline that plays one address. Everything that may block happens on a work queue of its
// own; messages are delivered on the default main context. Going away does not wait for the pipeline to end.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Host/Receiver/Media/GstHandles.h"
#include "Host/Receiver/Media/PictureOutput.h"
#include "Host/Receiver/Media/WorkQueue.h"

namespace Receiver {

// What a pipeline says of itself, as messages of the kind "application".
namespace PipelineSays {
inline constexpr char IsLive[] = "is-live";  // will never say that it has prerolled
inline constexpr char StateChangeFailed[] = "state-change-failed";
inline constexpr char SeekFailed[] = "seek-failed";
}  // namespace PipelineSays

class Pipeline {
 public:
    enum class Seek { Exact, KeyFrames };
    // Null when there is no working GStreamer.
    using MessageHandler = std::function<void(GstMessage*)>;

    // The sound is a GStreamer description of a sink; an empty one is the sound device, if there is any.
    Pipeline(const std::string& url, std::shared_ptr<PictureGate> picture, const std::string& sound,
             MessageHandler onMessage);
    Pipeline(const Pipeline&) = delete;
    Pipeline& operator=(const Pipeline&) = delete;
    ~Pipeline();

    void setState(GstState state);
    void seek(double rate, std::uint32_t milliseconds, Seek mode);
    void selectStreams(std::vector<std::string> ids);
    void setVolume(double volume);  // 0 to 1
    void setMuted(bool muted);
    void setPictureShown(bool shown);
    void recalculateLatency();

    // Milliseconds; none while unknown.
    [[nodiscard]] std::optional<std::uint32_t> position() const;
    [[nodiscard]] std::optional<std::uint32_t> duration() const;
    [[nodiscard]] bool isSeekable() const;
    // Whether the address is a list of segments, which are fetched one by one.
    [[nodiscard]] bool isAdaptive() const;
    // Whether the message is about the pipeline as a whole.
    [[nodiscard]] bool isSource(GstMessage* message) const;

 private:
    // Shared with the work that is under way.
    struct Core;

    void post(std::function<void(GstElement&)> work);

    std::shared_ptr<Core> m_core;
    std::shared_ptr<PictureGate> m_picture;
    WorkQueue m_queue;
};

}  // namespace Receiver
