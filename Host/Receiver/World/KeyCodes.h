// The key names of the remote control and their codes.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Receiver {

// "VK_RED" or a decimal code such as "403"; nothing for a name that no key has.
[[nodiscard]] std::optional<std::uint32_t> keyCode(const std::string& key);

}  // namespace Receiver
