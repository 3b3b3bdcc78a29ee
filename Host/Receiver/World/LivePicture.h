// The moving picture of the channel that is tuned to, with its sound: a film that begins again at its end,
// one for all who look at the channel.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Host/Receiver/World/FrameStore.h"
#include "Host/Receiver/World/MediaPlayer.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class LivePicture : private MediaListener {
 public:
    // A file without a whole path is in the first of the folders that has it. `changed` runs when pictureOf()
    // may answer something else than before.
    LivePicture(MediaPlayerFactory make, Timers& timers, std::vector<std::string> folders,
                std::function<void()> changed)
        : m_make(std::move(make)),
          m_folders(std::move(folders)),
          m_changed(std::move(changed)),
          m_frames([this] { m_changed(); }),
          m_next(timers) {}

    // Null ends it. The volume is from 0 to 100.
    void show(const Channel* channel, std::int32_t volume);
    // What there is to see of the channel now: a card when it has no film, or one that does not play.
    [[nodiscard]] PlanePicture pictureOf(const Channel& channel) const;
    [[nodiscard]] const FrameStore& frames() const { return m_frames; }

 private:
    void mediaStateChanged(MediaState state, std::int32_t error) override;
    void mediaSpeedChanged(double) override {}
    void mediaPositionChanged(std::uint32_t) override {}
    void mediaComponentsChanged() override { m_changed(); }

    // Of the channel's film; empty when it has none.
    [[nodiscard]] std::string addressOf(const Channel& channel) const;
    void complainOnce(const std::string& picture);
    // Back to the beginning shortly before the end: a film that has ended needs another process.
    void goRound();

    const MediaPlayerFactory m_make;
    const std::vector<std::string> m_folders;
    const std::function<void()> m_changed;
    std::string m_address;  // of what plays, or has failed
    std::string m_missing;
    bool m_failed = false;
    FrameStore m_frames;
    Timer m_next;
    std::unique_ptr<MediaPlayer> m_player;  // made when it is first needed
};

}  // namespace Receiver
