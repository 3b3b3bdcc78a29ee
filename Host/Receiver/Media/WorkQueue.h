// Runs what may block on a thread of its own, one piece after the other. Whoever posts never waits; what has
// been posted runs even after the queue is gone.
#pragma once

#include <cstdint>
#include <functional>

#include <glib.h>

namespace Receiver {

class WorkQueue {
 public:
    WorkQueue();
    WorkQueue(const WorkQueue&) = delete;
    WorkQueue& operator=(const WorkQueue&) = delete;
    ~WorkQueue();

    void post(std::function<void()> work);

    // For the end of the program: true when all work of all queues is done within the time limit.
    [[nodiscard]] static bool waitForAll(std::uint32_t milliseconds);

 private:
    GThreadPool* m_pool;
};

}  // namespace Receiver
