// The names under which the receiver is found on the bus.
#pragma once

namespace Receiver::Names {

inline constexpr const char Prefix[] = "org.vantrel.hbbtv.";
inline constexpr const char ObjectPath[] = "/org/vantrel/hbbtv";
inline constexpr const char Control[] = "org.vantrel.hbbtv.ReceiverControl";
inline constexpr const char ControlPath[] = "/org/vantrel/hbbtv/control";
// The error that the control interface answers with when it refuses.
inline constexpr const char RefusedError[] = "org.vantrel.hbbtv.ReceiverControl.Error.Refused";

}  // namespace Receiver::Names
