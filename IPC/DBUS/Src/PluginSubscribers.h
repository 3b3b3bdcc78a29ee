// Who hears the receiver's events, and the delivery of one event to all of them.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <mutex>

#include "API/Src/IPluginController.h"

// Pages create and drop objects inside their handlers, and garbage collection runs there. So subscribing,
// unsubscribing and delivering are allowed from inside OnEvent: who is removed is not called any more, who is
// added hears the next event. On other threads Remove returns when no delivery to the controller is under
// way.
class PluginSubscribers {
 public:
    // Neither owns the controller. A controller that is already there stays as it is; null is ignored.
    void Add(IPluginController* controller);
    void Remove(IPluginController* controller);

    // In the order of the controllers' addresses.
    void Deliver(const event_t& event);

 private:
    // The value says when the controller came: an object made at the address of one that went during a
    // delivery is not the one that the delivery was for.
    using Controllers = std::map<IPluginController*, uint64_t, std::less<>>;

    std::recursive_mutex m_mutex;
    Controllers m_controllers;
    uint64_t m_arrivals = 0;
};
