// A medium's streams as components: what GStreamer calls a stream, under a number that stays the same.
#pragma once

#include <string>
#include <vector>

#include "Host/Media/GstHandles.h"
#include "Host/Media/OfferedSound.h"
#include "Host/Receiver/World/Scenario.h"

namespace Media {

using Receiver::Component;

class StreamList {
 public:
    void update(GstObjectHandle<GstStreamCollection> collection);
    // What is said of the sound of those that are not decoded.
    void offer(std::vector<OfferedSound> sounds) { m_offered = std::move(sounds); }
    // As the streams describe themselves now; some learn their format only when they are decoded.
    [[nodiscard]] std::vector<Component> components() const;
    [[nodiscard]] bool has(Receiver::ComponentType type) const;

    // The stream behind one of them.
    [[nodiscard]] const std::string& streamId(const Component& component) const {
        return m_streamIds[static_cast<std::size_t>(component.pid) - 1];
    }

 private:
    // Of the track of that language, counted from 0; 0 while unknown.
    [[nodiscard]] int offeredChannels(const std::string& language, int place) const;

    // A stream's pid is its place here, counted from 1.
    std::vector<std::string> m_streamIds;
    GstObjectHandle<GstStreamCollection> m_collection;
    std::vector<OfferedSound> m_offered;
};

}  // namespace Media
