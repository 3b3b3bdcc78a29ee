// What the list of a stream in segments (DASH, HLS) tells of its sound: of a track that is not heard nothing
// is fetched, and nobody else knows.
#pragma once

#include <string>
#include <vector>

namespace Media {

struct OfferedSound {
    std::string language;  // as the list writes it
    int channels = 0;      // with those for low frequencies; 0 when it does not say
};

// In the list's order. What cannot be read offers nothing.
[[nodiscard]] std::vector<OfferedSound> soundsOfferedBy(const std::string& list);

}  // namespace Media
