#include "Host/Picture/PictureView.h"

#include <algorithm>
#include <utility>

namespace Host {

namespace {

// A writer that outruns so many looks is faster than any film.
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
        if (turnTo(newest))
            return true;
    }
    return false;
}

template <typename Look>
bool PictureView::readWhole(std::uint32_t number, const Look& look) const {
    const auto& buffer = memory().bufferOf(number);
    if (buffer.number.load(std::memory_order_acquire) != number)
        return false;
    look(buffer);
    // Had anything been written since, the number would be another now.
    std::atomic_thread_fence(std::memory_order_acquire);
    return buffer.number.load(std::memory_order_relaxed) == number;
}

bool PictureView::turnTo(std::uint32_t number) {
    Frame frame{number};
    const bool isWhole = readWhole(number, [&frame](const PictureMemory::Buffer& buffer) {
        frame.width = buffer.width.load(std::memory_order_relaxed);
        frame.height = buffer.height.load(std::memory_order_relaxed);
    });
    if (!isWhole || frame.width == 0 || frame.width > PictureMemory::LargestWidth || frame.height == 0 ||
        frame.height > PictureMemory::LargestHeight)
        return false;
    m_frame = frame;
    return true;
}

bool PictureView::read(std::uint32_t* pixels) const {
    return m_frame.number != 0 && readWhole(m_frame.number, [&](const PictureMemory::Buffer& buffer) {
               std::copy_n(buffer.pixels.data(), std::size_t{m_frame.width} * m_frame.height, pixels);
           });
}

}  // namespace Host
