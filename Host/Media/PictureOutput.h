// The way of a pipeline's pictures into memory that other processes look into.
#pragma once

#include <atomic>
#include <functional>
#include <mutex>

#include <gst/video/video.h>

#include "Host/Media/GstHandles.h"
#include "Host/Picture/PictureWriter.h"

namespace Media {

using GstVideoConverterHandle = std::unique_ptr<GstVideoConverter, Host::GFree<&gst_video_converter_free>>;

class PictureOutput {
 public:
    // `changed` runs on a thread of the pipeline, or within show(): there is a picture where none was, or the
    // other way round.
    explicit PictureOutput(std::function<void(bool)> changed) : m_changed(std::move(changed)) {}

    // Without, pictures are only timed.
    void show(bool shown);
    // How many there have been, seen or not.
    [[nodiscard]] unsigned count() const { return m_count; }
    // For a reader of another process.
    [[nodiscard]] Host::Descriptor share() const { return m_memory.share(); }

    // An element that shows its pictures here, in time.
    [[nodiscard]] GstElement* makeSink();

 private:
    void take(GstSample* sample);
    // Makes ready for pictures of this kind, if those before were of another.
    [[nodiscard]] bool prepare(const GstVideoInfo& from);
    [[nodiscard]] bool convert(GstBuffer* buffer, std::uint32_t* pixels);

    const std::function<void(bool)> m_changed;
    std::mutex m_mutex;
    bool m_shown = true;
    std::atomic<unsigned> m_count = 0;
    Host::PictureWriter m_memory;
    GstVideoInfo m_from{};
    GstVideoInfo m_to{};
    GstVideoConverterHandle m_converter;
};

}  // namespace Media
