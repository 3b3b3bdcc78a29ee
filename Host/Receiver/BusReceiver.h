// The receiver on the bus: exports the interfaces, owns the names, and serves until it is told to stop.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Host/Inc/GCallbacks.h"
#include "Host/Receiver/CallDispatcher.h"
#include "Host/Receiver/ControlService.h"
#include "Host/Receiver/DbusEvents.h"
#include "Host/Receiver/GLibTimers.h"
#include "Host/Receiver/Media/MediaChild.h"
#include "Host/Receiver/Services.h"
#include "Host/Receiver/SignalEmitter.h"
#include "Host/Receiver/World/World.h"

namespace Receiver {

class BusReceiver : Host::Pinned {
 public:
    // Throws ScenarioError.
    BusReceiver(GDBusConnection* connection, const nlohmann::json& scenario, const std::string& folder,
                const std::string& pictures);
    ~BusReceiver();

    // False, with the reason in "problem", when an object or a name could not be had.
    [[nodiscard]] bool start(std::string& problem);

 private:
    void onOwnerChanged(GDBusConnection*, const char*, const char*, const char*, const char*,
                        GVariant* change);
    [[nodiscard]] MediaPlayerFactory chosenPlayer();
    [[nodiscard]] bool own(const std::string& name, std::string& problem);

    GDBusConnection* m_connection;
    GLibTimers m_timers;
    MediaChildren m_children;
    DbusEvents m_events;
    World m_world;
    CallDispatcher m_dispatcher;
    SignalEmitter m_emitter;
    ControlDesk m_desk;
    std::vector<Skeleton> m_services;
    Skeleton m_control;
    unsigned m_watch;  // of who leaves the bus
};

}  // namespace Receiver
