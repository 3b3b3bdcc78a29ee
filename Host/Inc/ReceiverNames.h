// The names under which the receiver is found on the bus.
#pragma once

#include "Host/Inc/GHandles.h"

namespace Receiver::Names {

inline constexpr const char Prefix[] = "org.vantrel.hbbtv.";
inline constexpr const char ObjectPath[] = "/org/vantrel/hbbtv";
inline constexpr const char Control[] = "org.vantrel.hbbtv.ReceiverControl";
inline constexpr const char ControlPath[] = "/org/vantrel/hbbtv/control";
// The error that the control interface answers with when it refuses.
inline constexpr const char RefusedError[] = "org.vantrel.hbbtv.ReceiverControl.Error.Refused";

}  // namespace Receiver::Names

namespace Host {

// False also, with a log line, when the bus does not answer.
[[nodiscard]] inline bool isNameOwned(GDBusConnection* bus, const char* name) {
    constexpr int kLimitMs = 2000;
    GErrorSlot error;
    const GVariantHandle reply(g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "NameHasOwner",
        g_variant_new("(s)", name), G_VARIANT_TYPE("(b)"), G_DBUS_CALL_FLAGS_NONE, kLimitMs, nullptr,
        error.out()));
    gboolean owned = FALSE;
    if (reply)
        g_variant_get(reply.get(), "(b)", &owned);
    else
        g_warning("the session bus does not answer: %s", error.message());
    return owned;
}

}  // namespace Host
