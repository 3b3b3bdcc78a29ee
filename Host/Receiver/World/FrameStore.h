// What a player that decodes shows, for the shell to look into.
#pragma once

#include <functional>
#include <utility>

#include "Host/Receiver/World/MediaPlayer.h"

namespace Receiver {

class FrameStore : public PictureSink {
 public:
    // `appeared` runs when there is something to be seen.
    explicit FrameStore(std::function<void()> appeared) : m_appeared(std::move(appeared)) {}

    void show(Host::Descriptor memory) override {
        m_memory = std::move(memory);
        m_appeared();
    }
    void clear() override { m_memory = {}; }

    [[nodiscard]] bool hasFrame() const { return static_cast<bool>(m_memory); }
    // For a reader of another process; none before the first frame.
    [[nodiscard]] Host::Descriptor share() const {
        return hasFrame() ? m_memory.duplicate() : Host::Descriptor();
    }

 private:
    const std::function<void()> m_appeared;
    Host::Descriptor m_memory;
};

}  // namespace Receiver
