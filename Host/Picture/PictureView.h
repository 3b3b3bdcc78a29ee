// The viewer's end: the newest frame of a player, whole or not at all. The memory is another process's and may
// hold anything at any time; nothing that is read from it is believed unseen.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "Host/Picture/PictureMemory.h"
#include "Host/Picture/SharedMemory.h"

namespace Host {

class PictureView {
 public:
    // Null for a descriptor of anything but a picture.
    [[nodiscard]] static std::unique_ptr<PictureView> open(Descriptor file);

    // Takes the newest frame. False when that is the one it had, also when the writer was faster than the
    // copy.
    bool update();

    // Both 0 while there is no picture.
    [[nodiscard]] int width() const { return m_frame.width; }
    [[nodiscard]] int height() const { return m_frame.height; }
    // 0x00RRGGBB, row by row without gaps; good until the next update().
    [[nodiscard]] const std::vector<std::uint32_t>& pixels() const { return m_frame.pixels; }

 private:
    struct Frame {
        std::uint32_t number = 0;
        int width = 0;
        int height = 0;
        std::vector<std::uint32_t> pixels;
    };

    explicit PictureView(Mapping mapping) : m_mapping(std::move(mapping)) {}

    [[nodiscard]] const PictureMemory& memory() const {
        return *static_cast<const PictureMemory*>(m_mapping.address());
    }
    // Copies the frame into the spare one; false when it is torn, or none.
    [[nodiscard]] bool copy(std::uint32_t number);

    Mapping m_mapping;
    Frame m_frame;
    Frame m_spare;
};

}  // namespace Host
