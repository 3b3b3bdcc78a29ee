// The decoding process's end: takes the frames of its film. Any thread may call it.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>

#include "Host/Picture/PictureMemory.h"
#include "Host/Picture/SharedMemory.h"

namespace Host {

enum class Written {
    Refused,  // it is no frame, or there is no memory to be had
    First,    // before it there was no picture
    Further,
};

class PictureWriter {
 public:
    // Of at most 1920x1080. `fill` is given the place of the pixels, and answers whether they are a frame
    // now. The memory is made for the first frame.
    [[nodiscard]] Written write(int width, int height, const std::function<bool(std::uint32_t*)>& fill);
    // Readers see no picture until there is another frame.
    void clear();

    [[nodiscard]] bool hasFrame() const;
    // What a PictureView opens; none before the first frame.
    [[nodiscard]] Descriptor share() const;

 private:
    [[nodiscard]] PictureMemory* memory() const;

    mutable std::mutex m_mutex;
    std::optional<SharedMemory> m_shared;
    std::uint32_t m_last = 0;
};

}  // namespace Host
