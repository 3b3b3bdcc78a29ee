#include "Host/Picture/PictureView.h"

#include <algorithm>
#include <utility>

namespace Host {

namespace {

// A writer that is faster than this many looks is not one that shows pictures at a rate of any film.
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
        const auto& buffer = memory().bufferOf(newest);
        if (newest != 0 && buffer.number.load(std::memory_order_acquire) != newest)
            continue;
        const auto frame = newest == 0 ? Frame()
                                       : Frame{newest, buffer.width.load(std::memory_order_relaxed),
                                               buffer.height.load(std::memory_order_relaxed)};
        if (newest != 0 && (!has(newest) || frame.width == 0 || frame.width > PictureMemory::LargestWidth ||
                            frame.height == 0 || frame.height > PictureMemory::LargestHeight))
            continue;
        m_frame = frame;
        return true;
    }
    return false;
}

bool PictureView::read(std::uint32_t* pixels) const {
    const auto& buffer = memory().bufferOf(m_frame.number);
    if (m_frame.number == 0 || buffer.number.load(std::memory_order_acquire) != m_frame.number)
        return false;
    std::copy_n(buffer.pixels.data(), std::size_t{m_frame.width} * m_frame.height, pixels);
    return has(m_frame.number);
}

bool PictureView::has(std::uint32_t number) const {
    // Had anything been written since, the number would be another now.
    std::atomic_thread_fence(std::memory_order_acquire);
    return memory().bufferOf(number).number.load(std::memory_order_relaxed) == number;
}

}  // namespace Host
