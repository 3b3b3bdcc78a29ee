// What the shell and the web-process adapter agree on: the initialisation data, the private connection on
// which the bundle's messages and the files of the carousel travel, and the shell's messages to a page.
#pragma once

namespace Host::ShellChannel {

// Initialisation data of a web process: the connection's address, the bundle's path (empty for none),
// automation, whether WebKit writes the console to the terminal.
inline constexpr char kUserDataType[] = "(ssbb)";

// The connection is peer to peer, so there are no bus names. A body or reply is (is there one, its text).
inline constexpr char kPath[] = "/org/vantrel/hbbtv/shell";
inline constexpr char kInterface[] = "org.vantrel.hbbtv.ShellChannel";
inline constexpr char kPostMessage[] = "PostMessage";
inline constexpr char kPostSynchronousMessage[] = "PostSynchronousMessage";
// Comes before the page loads anything, from a web process that reads files for its pages.
inline constexpr char kAnnouncePage[] = "AnnouncePage";
inline constexpr char kMessageType[] = "(ts(bs))";
inline constexpr char kReplyType[] = "((bs))";

// Synchronous, with the code of a key that the page is about to get; without an answer it does not. Only when
// a driver may press keys, which knows no remote control.
inline constexpr char kDriverKeyPressed[] = "DriverKeyPressed";
inline constexpr char kDriverKeyReleased[] = "DriverKeyReleased";

// Of both interfaces.
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
    <method name="AnnouncePage">
      <arg name="page" type="t" direction="in"/>
    </method>
  </interface>
  <interface name="org.vantrel.hbbtv.ShellFiles">
    <method name="ReadFile">
      <arg name="handle" type="u" direction="in"/>
      <arg name="url" type="s" direction="in"/>
      <arg name="outcome" type="y" direction="out"/>
      <arg name="bytes" type="ay" direction="out"/>
    </method>
    <method name="AbandonFile">
      <arg name="handle" type="u" direction="in"/>
    </method>
  </interface>
</node>
)xml";

// The other way round, the shell asks a web process for files of the object carousel. A reply comes when the
// receiver has answered, however long that takes; whoever waits no longer says so.
inline constexpr char kFilesInterface[] = "org.vantrel.hbbtv.ShellFiles";
inline constexpr char kReadFile[] = "ReadFile";
inline constexpr char kAbandonFile[] = "AbandonFile";
inline constexpr char kFileReplyType[] = "(yay)";

enum class FileOutcome : unsigned char {
    Read,
    Missing,
    Refused,
    // More bytes were promised than came.
    Incomplete,
};

// The message to a page, a boolean: no view is beneath its own, but the running channel.
inline constexpr char kIsLowest[] = "IsLowest";

// Keys that no keyboard has travel as the key of the private character that is this far from their code.
inline constexpr unsigned kFirstPrivateCharacter = 0xE000;

}  // namespace Host::ShellChannel
