#include "Host/Picture/PictureWriter.h"

#include <algorithm>

namespace Host {

namespace {

constexpr int kBytesPerPixel = 4;

std::uint32_t dividedUp(int number, std::uint32_t divisor) {
    return (static_cast<std::uint32_t>(number) + divisor - 1) / divisor;
}

std::uint32_t pixelOf(const std::uint8_t* bgrx) {
    return std::uint32_t{bgrx[0]} | std::uint32_t{bgrx[1]} << 8 | std::uint32_t{bgrx[2]} << 16;
}

}  // namespace

PictureMemory* PictureWriter::memory() const {
    return m_shared ? static_cast<PictureMemory*>(m_shared->bytes.address()) : nullptr;
}

Written PictureWriter::write(int width, int height, int stride, const std::uint8_t* bgrx) {
    if (width <= 0 || height <= 0 || stride / kBytesPerPixel < width || bgrx == nullptr)
        return Written::Refused;
    const std::lock_guard lock(m_mutex);
    if (!m_shared) {
        m_shared = makeSharedMemory("hbbtv-picture", sizeof(PictureMemory));
        if (!m_shared)
            return Written::Refused;
        memory()->mark.store(PictureMemory::Mark, std::memory_order_relaxed);
    }
    const auto step = std::max(dividedUp(width, PictureMemory::LargestWidth),
                               dividedUp(height, PictureMemory::LargestHeight));
    const auto columns = dividedUp(width, step);
    const auto rows = dividedUp(height, step);

    m_last += m_last == UINT32_MAX ? 2 : 1;
    auto& buffer = memory()->bufferOf(m_last);
    buffer.number.store(0, std::memory_order_relaxed);
    // Whoever sees anything of the new frame also sees that the old one is gone.
    std::atomic_thread_fence(std::memory_order_release);
    buffer.width.store(columns, std::memory_order_relaxed);
    buffer.height.store(rows, std::memory_order_relaxed);
    auto* pixel = buffer.pixels.data();
    for (std::uint32_t row = 0; row < rows; ++row) {
        const auto* source = bgrx + std::size_t{row} * step * static_cast<std::size_t>(stride);
        for (std::uint32_t column = 0; column < columns; ++column)
            (pixel++)->store(pixelOf(source + std::size_t{column} * step * kBytesPerPixel),
                             std::memory_order_relaxed);
    }
    buffer.number.store(m_last, std::memory_order_release);
    const auto before = memory()->newest.exchange(m_last, std::memory_order_release);
    return before == 0 ? Written::First : Written::Further;
}

void PictureWriter::clear() {
    const std::lock_guard lock(m_mutex);
    if (m_shared)
        memory()->newest.store(0, std::memory_order_release);
}

bool PictureWriter::hasFrame() const {
    const std::lock_guard lock(m_mutex);
    return m_shared && memory()->newest.load(std::memory_order_relaxed) != 0;
}

Descriptor PictureWriter::share() const {
    const std::lock_guard lock(m_mutex);
    return m_shared ? m_shared->file.duplicate() : Descriptor();
}

}  // namespace Host
