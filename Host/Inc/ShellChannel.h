// What the shell and the web-process adapter agree on: the initialisation data, the private connection on
// which the bundle's messages travel, and the shell's messages to a page.
#pragma once

namespace Host::ShellChannel {

// Initialisation data of a web process: the connection's address, the bundle's path (empty for none),
// automation.
inline constexpr char kUserDataType[] = "(ssb)";

// The connection is peer to peer, so there are no bus names. A body or reply is (is there one, its text).
inline constexpr char kPath[] = "/org/vantrel/hbbtv/shell";
inline constexpr char kInterface[] = "org.vantrel.hbbtv.ShellChannel";
inline constexpr char kPostMessage[] = "PostMessage";
inline constexpr char kPostSynchronousMessage[] = "PostSynchronousMessage";
inline constexpr char kMessageType[] = "(ts(bs))";
inline constexpr char kReplyType[] = "((bs))";

inline constexpr char kIntrospection[] = R"xml(
<node>
  <interface name="org.vantrel.hbbtv.ShellChannel">
    <method name="PostMessage">
      <arg name="page" type="t" direction="in"/>
      <arg name="name" type="s" direction="in"/>
      <arg name="body" type="(bs)" direction="in"/>
    </method>
    <method name="PostSynchronousMessage">
      <arg name="page" type="t" direction="in"/>
      <arg name="name" type="s" direction="in"/>
      <arg name="body" type="(bs)" direction="in"/>
      <arg name="reply" type="(bs)" direction="out"/>
    </method>
  </interface>
</node>
)xml";

// Keys that no keyboard has travel as the key of the private character that is this far from their code.
inline constexpr unsigned kFirstPrivateCharacter = 0xE000;

}  // namespace Host::ShellChannel
