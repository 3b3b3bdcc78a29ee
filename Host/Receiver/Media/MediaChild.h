// A process that plays one film, seen by the receiver, which never waits for it: it is told to end, and
// killed when it does not.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Host/Inc/GHandles.h"
#include "Host/Receiver/Media/MediaLink.h"

namespace Receiver {

class MediaChild {
 public:
    // Null, and a line in the log, when there is no such program or it cannot be run.
    [[nodiscard]] static std::unique_ptr<MediaChild> start(const std::vector<std::string>& arguments);
    MediaChild(const MediaChild&) = delete;
    MediaChild& operator=(const MediaChild&) = delete;
    // Tells it to end.
    ~MediaChild();

    // GStreamer is loaded: it can begin at once.
    [[nodiscard]] bool isReady() const { return m_ready; }
    // The callbacks may destroy the child. Until then, what it says is ignored, and its end is noted.
    void listen(MediaLink::Callbacks callbacks) { m_callbacks = std::move(callbacks); }
    // A child that takes nothing any more is killed.
    void send(const MediaWord& word, std::uint32_t number, GVariant* content = nullptr);
    void kill();

 private:
    MediaChild(Host::GObjectHandle<GSubprocess> process, Host::Descriptor line);

    Host::GObjectHandle<GSubprocess> m_process;
    bool m_ready = false;
    MediaLink::Callbacks m_callbacks;
    MediaLink m_link;
};

// Where the players get theirs. One is started ahead, so that a film need not wait for GStreamer to be
// loaded.
class MediaChildren {
 public:
    // The arguments are those of the program.
    explicit MediaChildren(std::vector<std::string> arguments = {}) : m_arguments(std::move(arguments)) {}

    // Starts the spare one, unless it is there.
    void prepare();
    // Null when none can be started.
    [[nodiscard]] std::unique_ptr<MediaChild> take();
    // One that has not been told anything yet. Whoever plays and stops at once starts no further ones.
    void giveBack(std::unique_ptr<MediaChild> child);

 private:
    std::vector<std::string> m_arguments;
    std::unique_ptr<MediaChild> m_spare;
};

}  // namespace Receiver
