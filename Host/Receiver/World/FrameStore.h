// Where a player's frames go: into memory that the shell looks into.
#pragma once

#include <functional>
#include <memory>

#include "Host/Picture/PictureWriter.h"
#include "Host/Receiver/World/MediaPlayer.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class FrameStore : public PictureSink {
 public:
    // `appeared` runs on the world's own thread, and not after this object is gone: the first frame since
    // clear() is there.
    FrameStore(Timers& timers, std::function<void()> appeared);

    void frame(int width, int height, int stride, const std::uint8_t* bgrx) override;
    void clear() override { m_writer.clear(); }

    [[nodiscard]] bool hasFrame() const { return m_writer.hasFrame(); }
    // For a reader of another process; none before the first frame.
    [[nodiscard]] Host::Descriptor share() const { return m_writer.share(); }

 private:
    Timers& m_timers;
    const std::shared_ptr<const std::function<void()>> m_appeared;
    Host::PictureWriter m_writer;
};

}  // namespace Receiver
