// The remote control: which of its keys a key of the keyboard stands for, and what a key code belongs to.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Shell {

// Key groups of a keyset, as bits of the key mask.
enum KeyGroup : std::uint32_t {
    kGroupRed = 1,
    kGroupGreen = 2,
    kGroupYellow = 4,
    kGroupBlue = 8,
    kGroupNavigation = 16,
    kGroupVcr = 32,
    kGroupScroll = 64,
    kGroupInfo = 128,
    kGroupNumeric = 256,
    kGroupAlpha = 512,
    kGroupOther = 1024,
};
inline constexpr std::uint32_t kAllKeyGroups = 2047;

// Of the keys of a remote control, besides digits and letters.
enum KeyCode : std::uint32_t {
    kEnter = 13,
    kPause = 19,
    kSpace = 32,
    kPageUp = 33,
    kPageDown = 34,
    kEnd = 35,
    kHome = 36,
    kLeft = 37,
    kUp = 38,
    kRight = 39,
    kDown = 40,
    kRed = 403,
    kGreen = 404,
    kYellow = 405,
    kBlue = 406,
    kRewind = 412,
    kStop = 413,
    kPlay = 415,
    kRecord = 416,
    kFastForward = 417,
    kPrevious = 424,
    kNext = 425,
    kChannelUp = 427,
    kChannelDown = 428,
    kVolumeUp = 447,
    kVolumeDown = 448,
    kMute = 449,
    kInfo = 457,
    kGuide = 458,
    kTeletext = 459,
    kSubtitle = 460,
    kBack = 461,
    kMenu = 462,
    kPlayPause = 463,
};

// The remote-control code of a GDK keyval; nothing for keys that a remote control does not have.
[[nodiscard]] std::optional<std::uint32_t> keyCodeOf(std::uint32_t keyval);

// The same for a key that a driver presses in the page, by the code that the page would see.
[[nodiscard]] std::optional<std::uint32_t> keyCodeOfDriver(std::uint32_t domKeyCode);

// The group of a remote-control code; what is in no other group is in kGroupOther.
[[nodiscard]] KeyGroup keyGroupOf(std::uint32_t keyCode);

// The GDK keyval whose key event has this very code in WebKit, so that it can come as a real key, default
// action included; nothing for the codes that only a remote control has.
[[nodiscard]] std::optional<std::uint32_t> nativeKeyvalOf(std::uint32_t keyCode);

// The mapping for people, one line a key.
[[nodiscard]] std::string keyTableText();

}  // namespace Shell
