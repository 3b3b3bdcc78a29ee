// org.vantrel.hbbtv.ReceiverControl: the knobs of the simulated receiver, and its call log.
#pragma once

#include "Host/Inc/GHandles.h"
#include "Host/Receiver/CallDispatcher.h"
#include "Host/Receiver/SignalEmitter.h"
#include "Host/Receiver/World/World.h"

namespace Receiver {

// What the control interface works on; outlives the skeleton.
struct ControlDesk {
    World& world;
    CallDispatcher& dispatcher;
    ReceiverEvents& events;
    SignalEmitter& emitter;
    CallerName asker = {};  // whose call is being answered
};

[[nodiscard]] Host::GObjectHandle<GDBusInterfaceSkeleton> makeControl(ControlDesk& desk);

}  // namespace Receiver
