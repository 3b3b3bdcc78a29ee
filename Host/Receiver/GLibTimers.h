// The world's time, kept by the default main context.
#pragma once

#include <map>

#include "Host/Receiver/World/Timers.h"

namespace Receiver {

class GLibTimers : public Timers {
 public:
    GLibTimers() = default;
    GLibTimers(const GLibTimers&) = delete;
    GLibTimers& operator=(const GLibTimers&) = delete;
    ~GLibTimers() override;

    [[nodiscard]] Id after(std::uint32_t milliseconds, std::function<void()> action) override;
    void cancel(Id id) override;
    void post(std::function<void()> action) override;
    [[nodiscard]] std::int64_t now() const override;
    [[nodiscard]] std::int64_t utc() const override;

 private:
    std::map<Id, std::function<void()>> m_actions;
};

}  // namespace Receiver
