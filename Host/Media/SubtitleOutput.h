// What is to be read over a film, and when.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "Host/Media/GstHandles.h"

namespace Media {

struct Subtitle {
    std::string text;        // in lines
    std::uint32_t from = 0;  // milliseconds
    std::uint32_t until = 0;
};

class SubtitleOutput {
 public:
    // `due` runs on a thread of the pipeline, when it is time.
    explicit SubtitleOutput(std::function<void(const Subtitle&)> due) : m_due(std::move(due)) {}

    // An element that text goes to.
    [[nodiscard]] GstElement* makeSink();

 private:
    void take(GstSample* sample);

    const std::function<void(const Subtitle&)> m_due;
};

}  // namespace Media
