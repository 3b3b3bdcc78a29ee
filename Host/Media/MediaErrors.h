// What a failure of a pipeline means to a page.
#pragma once

#include <cstdint>
#include <string>

#include "Host/Media/GstHandles.h"

namespace Media {

// One of the codes of MediaError for a message of the kind "error".
[[nodiscard]] std::int32_t mediaErrorOf(GstMessage* message, const std::string& url);

// What such a message says, in words.
[[nodiscard]] std::string reasonOf(GstMessage* message);

// Whether a server's answer, in a message of the kind "http-headers", is one that it sends only from the
// beginning.
[[nodiscard]] bool refusesRanges(GstMessage* message);

// Whether the address leads to another machine, or to a server on this one.
[[nodiscard]] bool isRemote(const std::string& url);

}  // namespace Media
