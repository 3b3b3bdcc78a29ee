// The viewer's end: the newest frame of a player, whole or not at all. The memory is another process's and
// may hold anything at any time; nothing that is read from it is believed unseen.
#pragma once

#include <cstdint>
#include <memory>

#include "Host/Picture/PictureMemory.h"
#include "Host/Picture/SharedMemory.h"

namespace Host {

class PictureView {
 public:
    // Null for a descriptor of anything but a picture.
    [[nodiscard]] static std::unique_ptr<PictureView> open(Descriptor file);

    // Turns to the newest frame. False, and the frame before stays, when there is none that is new and whole.
    bool update();

    // Both 0 while there is no picture.
    [[nodiscard]] int width() const { return static_cast<int>(m_frame.width); }
    [[nodiscard]] int height() const { return static_cast<int>(m_frame.height); }
    // Copies the frame's width times height pixels, row by row without gaps, each the bytes red, green, blue
    // and 255. False, and the copy is torn, when the writer has meanwhile gone on: there is a newer one then.
    [[nodiscard]] bool read(std::uint32_t* pixels) const;

 private:
    struct Frame {
        std::uint32_t number = 0;
        std::uint32_t width = 0;
        std::uint32_t height = 0;
    };

    explicit PictureView(Mapping mapping) : m_mapping(std::move(mapping)) {}

    [[nodiscard]] const PictureMemory& memory() const {
        return *static_cast<const PictureMemory*>(m_mapping.get());
    }
    // False when the frame is gone, also while it was looked at.
    template <typename Look>
    [[nodiscard]] bool readWhole(std::uint32_t number, const Look& look) const;
    // False for a frame that is gone, or none.
    [[nodiscard]] bool turnTo(std::uint32_t number);

    Mapping m_mapping;
    Frame m_frame;
};

}  // namespace Host
