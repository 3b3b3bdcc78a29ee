// How frames lie in the memory that a decoding process shares with a viewer.
//
// Frames are numbered from 1; a frame's number says which buffer it is in. The writer goes round the buffers
// and never waits: while it fills one, that buffer's number is 0. A reader copies the newest frame and then
// looks whether the buffer still has the number that it had before; if not, what it has copied is torn. The
// pixels themselves are plain memory, so that libraries can fill them and they are copied as fast as memory
// is.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>

namespace Host {

struct PictureMemory {
    static constexpr std::uint32_t Mark = 0x48425054;
    // Two could be enough for a reader that is fast; with three it has the time of a whole frame.
    static constexpr std::uint32_t Buffers = 3;
    static constexpr std::uint32_t LargestWidth = 1920;
    static constexpr std::uint32_t LargestHeight = 1080;

    struct Buffer {
        std::atomic<std::uint32_t> number;
        std::atomic<std::uint32_t> width;
        std::atomic<std::uint32_t> height;
        // Row by row without gaps, each the bytes red, green, blue and 255: what a canvas takes.
        alignas(64) std::array<std::uint32_t, LargestWidth * LargestHeight> pixels;
    };

    std::atomic<std::uint32_t> mark;
    std::atomic<std::uint32_t> newest;  // 0: there is no picture
    std::array<Buffer, Buffers> buffers;

    [[nodiscard]] Buffer& bufferOf(std::uint32_t number) { return buffers[number % Buffers]; }
    [[nodiscard]] const Buffer& bufferOf(std::uint32_t number) const { return buffers[number % Buffers]; }
};

// Both ends need plain words, at the same places.
static_assert(std::atomic<std::uint32_t>::is_always_lock_free);
static_assert(sizeof(std::atomic<std::uint32_t>) == sizeof(std::uint32_t));

}  // namespace Host
