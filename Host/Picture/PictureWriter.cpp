#include "Host/Picture/PictureWriter.h"

namespace Host {

PictureMemory* PictureWriter::memory() const {
    return m_shared ? static_cast<PictureMemory*>(m_shared->bytes.get()) : nullptr;
}

Written PictureWriter::write(int width, int height, const std::function<bool(std::uint32_t*)>& fill) {
    const auto columns = static_cast<std::uint32_t>(width);
    const auto rows = static_cast<std::uint32_t>(height);
    if (width <= 0 || columns > PictureMemory::LargestWidth || height <= 0 ||
        rows > PictureMemory::LargestHeight)
        return Written::Refused;
    const std::lock_guard lock(m_mutex);
    if (!m_shared) {
        m_shared = makeSharedMemory("hbbtv-picture", sizeof(PictureMemory));
        if (!m_shared)
            return Written::Refused;
        memory()->mark.store(PictureMemory::Mark, std::memory_order_relaxed);
    }
    m_last += m_last == UINT32_MAX ? 2 : 1;
    auto& buffer = memory()->bufferOf(m_last);
    buffer.number.store(0, std::memory_order_relaxed);
    // Whoever sees anything of the new frame also sees that the old one is gone.
    std::atomic_thread_fence(std::memory_order_release);
    buffer.width.store(columns, std::memory_order_relaxed);
    buffer.height.store(rows, std::memory_order_relaxed);
    if (!fill(buffer.pixels.data()))
        return Written::Refused;
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
