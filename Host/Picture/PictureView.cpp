#include "Host/Picture/PictureView.h"

#include <utility>

namespace Host {

namespace {

// A writer that tears this many in a row is not one that shows pictures at a rate of any film.
constexpr int kAttempts = 3;

}  // namespace

std::unique_ptr<PictureView> PictureView::open(Descriptor file) {
    auto mapping = mapForReading(file, sizeof(PictureMemory));
    if (!mapping)
        return nullptr;
    std::unique_ptr<PictureView> view(new PictureView(std::move(mapping)));
    const auto mark = view->memory().mark.load(std::memory_order_relaxed);
    return mark == PictureMemory::Mark ? std::move(view) : nullptr;
}

bool PictureView::update() {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        const auto newest = memory().newest.load(std::memory_order_acquire);
        if (newest == m_frame.number)
            return false;
        if (newest == 0) {
            m_frame = Frame();
            return true;
        }
        if (copy(newest)) {
            std::swap(m_frame, m_spare);
            return true;
        }
    }
    return false;
}

bool PictureView::copy(std::uint32_t number) {
    const auto& buffer = memory().bufferOf(number);
    if (buffer.number.load(std::memory_order_acquire) != number)
        return false;
    const auto width = buffer.width.load(std::memory_order_relaxed);
    const auto height = buffer.height.load(std::memory_order_relaxed);
    if (width == 0 || width > PictureMemory::LargestWidth || height == 0 ||
        height > PictureMemory::LargestHeight)
        return false;
    m_spare.pixels.resize(std::size_t{width} * height);
    const auto* source = buffer.pixels.data();
    for (auto& pixel : m_spare.pixels)
        pixel = (source++)->load(std::memory_order_relaxed);
    // Had any of that been written since, the number would be another now.
    std::atomic_thread_fence(std::memory_order_acquire);
    if (buffer.number.load(std::memory_order_relaxed) != number)
        return false;
    m_spare.number = number;
    m_spare.width = static_cast<int>(width);
    m_spare.height = static_cast<int>(height);
    return true;
}

}  // namespace Host
