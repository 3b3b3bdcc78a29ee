// What a player that decodes shows, for the shell to look into.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "Host/Receiver/World/MediaPlayer.h"

namespace Receiver {

class FrameStore : public PictureSink {
 public:
    // `changed` runs when there is something to be seen, or to be read.
    explicit FrameStore(std::function<void()> changed) : m_changed(std::move(changed)) {}

    void show(Host::Descriptor memory) override {
        m_memory = std::move(memory);
        m_subtitles.clear();
        m_changed();
    }
    void clear() override {
        m_memory = {};
        m_subtitles.clear();
    }
    void subtitle(const std::string& text) override {
        m_subtitles = text;
        m_changed();
    }

    [[nodiscard]] const std::string& subtitles() const { return m_subtitles; }
    [[nodiscard]] bool hasFrame() const { return static_cast<bool>(m_memory); }
    // For a reader of another process; none before the first frame.
    [[nodiscard]] Host::Descriptor share() const {
        return hasFrame() ? m_memory.duplicate() : Host::Descriptor();
    }

 private:
    const std::function<void()> m_changed;
    Host::Descriptor m_memory;
    std::string m_subtitles;
};

}  // namespace Receiver
