// The user script that every frame runs at document start: the mutation library, the members table made from
// the interface descriptions, and the parts in InjectedBundle/Script. Put together at build time;
// NUL-terminated beyond its end.
#pragma once

#include <string_view>

namespace OipfJavaScript {

extern const std::string_view s_bootstrapScript;

}  // namespace OipfJavaScript
