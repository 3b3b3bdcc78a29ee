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

inline constexpr std::uint32_t kRedKey = 403;

// The remote-control code of a GDK keyval; nothing for keys that a remote control does not have.
[[nodiscard]] std::optional<std::uint32_t> keyCodeOf(std::uint32_t keyval);

// The group of a remote-control code; what is in no other group is in kGroupOther.
[[nodiscard]] KeyGroup keyGroupOf(std::uint32_t keyCode);

// The GDK keyval whose key event has this very code in WebKit, so that it can come as a real key, default
// action included; nothing for the codes that only a remote control has.
[[nodiscard]] std::optional<std::uint32_t> nativeKeyvalOf(std::uint32_t keyCode);

// The mapping for people, one line a key.
[[nodiscard]] std::string keyTableText();

}  // namespace Shell
