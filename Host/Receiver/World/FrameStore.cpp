#include "Host/Receiver/World/FrameStore.h"

namespace Receiver {

FrameStore::FrameStore(Timers& timers, std::function<void()> appeared)
    : m_timers(timers), m_appeared(std::make_shared<const std::function<void()>>(std::move(appeared))) {}

void FrameStore::frame(int width, int height, int stride, const std::uint8_t* bgrx) {
    if (m_writer.write(width, height, stride, bgrx) != Host::Written::First)
        return;
    m_timers.post([weak = std::weak_ptr(m_appeared)] {
        if (const auto appeared = weak.lock())
            (*appeared)();
    });
}

}  // namespace Receiver
