// The session bus.
#pragma once

#include "IPC/DBUS/Src/GLibHandles.h"

// The connection that the whole process shares, or none. The first call tries ten times, a second apart. When
// the bus has closed the connection it is made anew, with one attempt a call and a second.
[[nodiscard]] GObjectPtr<GDBusConnection> GetDBus();

// The same, and asks for the name on it; whether it was given is only logged.
[[nodiscard]] GObjectPtr<GDBusConnection> GetDBusAndName(const char* name);
