// The way of a pipeline's pictures to a PictureSink, which may go away while the pipeline is still at work.
#pragma once

#include <memory>
#include <mutex>

#include "Host/Receiver/Media/GstHandles.h"
#include "Host/Receiver/World/MediaPlayer.h"

namespace Receiver {

// What a pipeline holds of the sink. Frames pass while the gate is open; behind a shut gate none is under
// way.
class PictureGate {
 public:
    explicit PictureGate(PictureSink* sink) : m_sink(sink) {}

    void frame(int width, int height, int stride, const std::uint8_t* bgrx);
    // Takes the picture away until the gate is open again.
    void setOpen(bool open);
    // For ever: from now on the sink is not touched any more.
    void detach();

 private:
    std::mutex m_mutex;
    PictureSink* m_sink;
    bool m_open = true;
};

// An element that shows its pictures at the gate, in time. Without a gate the pictures are only timed.
[[nodiscard]] GstElement* makeVideoSink(const std::shared_ptr<PictureGate>& gate);

}  // namespace Receiver
