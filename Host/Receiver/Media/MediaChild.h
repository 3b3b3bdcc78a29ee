// A process that plays one film, seen by the receiver, which never waits for it: it is told to end, and
// killed when it does not.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include <gio/gunixconnection.h>

#include "Host/Inc/GHandles.h"
#include "Host/Receiver/Media/MediaLink.h"

namespace Receiver {

class MediaChild {
 public:
    // It is made by the program, and tells of itself when it is there.
    MediaChild(Host::GObjectHandle<GSubprocess> program, Host::Descriptor line);
    MediaChild(const MediaChild&) = delete;
    MediaChild& operator=(const MediaChild&) = delete;
    // Tells it to end.
    ~MediaChild();

    // The callbacks may destroy the child. Until then, what it says waits.
    void listen(MediaLink::Callbacks callbacks) { m_callbacks = std::move(callbacks); }
    // A child that takes nothing any more is killed.
    void send(const MediaWord& word, std::uint32_t number, GVariant* content = nullptr);
    void kill();

 private:
    Host::GObjectHandle<GSubprocess> m_program;
    Host::Descriptor m_process;
    MediaLink::Callbacks m_callbacks;
    MediaLink m_link;
};

// Where the players get theirs: a program that has loaded GStreamer, and becomes two for each film.
class MediaChildren {
 public:
    // The arguments are those of the program.
    explicit MediaChildren(std::vector<std::string> arguments = {}) : m_arguments(std::move(arguments)) {}

    // Starts the program, unless it is there. False, and a line in the log, when it cannot be run.
    bool prepare();
    // Null when none can be started.
    [[nodiscard]] std::unique_ptr<MediaChild> take();

 private:
    [[nodiscard]] bool hand(const Host::Descriptor& line);

    std::vector<std::string> m_arguments;
    Host::GObjectHandle<GSubprocess> m_program;
    Host::GObjectHandle<GUnixConnection> m_line;
};

}  // namespace Receiver
