// What the words of a command line mean, so that they need no quoting beyond the shell's own.
#pragma once

#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "Host/Inc/GHandles.h"

namespace Control {

using Words = std::vector<std::string>;

[[nodiscard]] std::string joined(const Words& words, size_t from = 0);

// A place as a JSON pointer: "locale.country" and "/locale/country" are the same.
[[nodiscard]] std::string pointerOf(const std::string& place);

// Each value below `value`, the way `get` and `set` take its place.
[[nodiscard]] Words placesIn(const nlohmann::json& value);

// 3 is a number, true a boolean, null null, what begins with { [ or " is JSON, and everything else a text.
[[nodiscard]] nlohmann::json jsonOf(const std::string& word);

// A key of the remote control as the receiver names it: red, VK_RED, 5 (the key 5), 403 (a code).
[[nodiscard]] std::string keyOf(const std::string& word);

// A number from 0.
[[nodiscard]] std::uint32_t numberOf(const std::string& word);

// An argument of a method or signal: a text needs no quotes, bytes may be given as a text, everything else is
// GVariant text. Without a type it is what it looks like.
[[nodiscard]] Host::GVariantHandle argumentOf(const std::string& word, const char* type);

}  // namespace Control
