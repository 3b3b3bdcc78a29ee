// A medium's streams as components: what GStreamer calls a stream, under a number that stays the same.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Host/Receiver/Media/GstHandles.h"
#include "Host/Receiver/World/Scenario.h"

namespace Receiver {

class StreamList {
 public:
    void update(GstObjectHandle<GstStreamCollection> collection);
    // As the streams describe themselves now; some learn their format only when they are decoded.
    [[nodiscard]] std::vector<Component> components() const;
    [[nodiscard]] bool hasPictureOrSound() const;

    // The streams behind these components.
    [[nodiscard]] std::vector<std::string> streamIds(const std::vector<Component>& components) const;

 private:
    // A stream's pid is its place here, counted from 1.
    std::vector<std::string> m_streamIds;
    GstObjectHandle<GstStreamCollection> m_collection;
};

}  // namespace Receiver
