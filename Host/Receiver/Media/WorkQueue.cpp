#include "Host/Receiver/Media/WorkQueue.h"

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace Receiver {

namespace {

using Work = std::function<void()>;

struct Pending {
    std::mutex mutex;
    std::condition_variable none;
    std::size_t count = 0;
};

// Never destroyed: work may outlast the program's static objects.
Pending& pending() {
    static auto* const shared = new Pending;
    return *shared;
}

void run(gpointer data, gpointer) {
    {
        const std::unique_ptr<Work> work(static_cast<Work*>(data));
        (*work)();
    }
    auto& all = pending();
    const std::lock_guard lock(all.mutex);
    if (--all.count == 0)
        all.none.notify_all();
}

}  // namespace

// A pool that shares its threads with others cannot fail to be made.
WorkQueue::WorkQueue() : m_pool(g_thread_pool_new(run, nullptr, 1, FALSE, nullptr)) {}

WorkQueue::~WorkQueue() {
    g_thread_pool_free(m_pool, FALSE, FALSE);
}

void WorkQueue::post(Work work) {
    {
        const std::lock_guard lock(pending().mutex);
        ++pending().count;
    }
    g_thread_pool_push(m_pool, std::make_unique<Work>(std::move(work)).release(), nullptr);
}

bool WorkQueue::waitForAll(std::uint32_t milliseconds) {
    auto& all = pending();
    std::unique_lock lock(all.mutex);
    return all.none.wait_for(lock, std::chrono::milliseconds(milliseconds),
                             [&all] { return all.count == 0; });
}

}  // namespace Receiver
