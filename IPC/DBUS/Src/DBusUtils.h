// The session bus.
#pragma once

#include "IPC/DBUS/Src/GLibHandles.h"

// The connection that the whole process shares, or none. Tries ten times, a second apart.
[[nodiscard]] GObjectPtr<GDBusConnection> GetDBus();

// The same, and asks for the name on it; whether it was given is only logged.
[[nodiscard]] GObjectPtr<GDBusConnection> GetDBusAndName(const char* name);
