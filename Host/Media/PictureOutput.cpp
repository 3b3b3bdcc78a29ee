#include "Host/Media/PictureOutput.h"

#include <algorithm>
#include <cmath>

#include <gst/app/gstappsink.h>

namespace Media {

namespace {

using Host::PictureMemory;

class MappedFrame {
 public:
    MappedFrame(const GstVideoInfo& info, GstBuffer* buffer, GstMapFlags flags)
        : m_isMapped(gst_video_frame_map(&m_frame, &info, buffer, flags) != FALSE) {}
    ~MappedFrame() {
        if (m_isMapped)
            gst_video_frame_unmap(&m_frame);
    }
    MappedFrame(const MappedFrame&) = delete;
    MappedFrame& operator=(const MappedFrame&) = delete;

    explicit operator bool() const { return m_isMapped; }
    [[nodiscard]] GstVideoFrame* get() { return &m_frame; }

 private:
    GstVideoFrame m_frame{};
    const bool m_isMapped;
};

// Of square pixels, and not too large for the memory.
GstVideoInfo shownAs(const GstVideoInfo& from) {
    const auto width = static_cast<double>(from.width) * from.par_n / from.par_d;
    const auto height = static_cast<double>(from.height);
    const auto scale =
        std::min({1.0, PictureMemory::LargestWidth / width, PictureMemory::LargestHeight / height});
    const auto scaled = [scale](double length) {
        return static_cast<guint>(std::max(1L, std::lround(length * scale)));
    };
    GstVideoInfo to;
    gst_video_info_set_format(&to, GST_VIDEO_FORMAT_RGBA, scaled(width), scaled(height));
    // These are not for the converter to change.
    to.interlace_mode = from.interlace_mode;
    to.fps_n = from.fps_n;
    to.fps_d = from.fps_d;
    return to;
}

}  // namespace

bool PictureOutput::prepare(const GstVideoInfo& from) {
    if (m_converter == nullptr || !gst_video_info_is_equal(&from, &m_from)) {
        m_from = from;
        m_to = shownAs(from);
        m_converter.reset(gst_video_converter_new(&m_from, &m_to, nullptr));
    }
    return m_converter != nullptr;
}

bool PictureOutput::convert(GstBuffer* buffer, std::uint32_t* pixels) {
    const GstBufferHandle target(gst_buffer_new_wrapped_full(static_cast<GstMemoryFlags>(0), pixels,
                                                             m_to.size, 0, m_to.size, nullptr, nullptr));
    MappedFrame from(m_from, buffer, GST_MAP_READ);
    MappedFrame to(m_to, target.get(), GST_MAP_WRITE);
    if (!from || !to)
        return false;
    gst_video_converter_frame(m_converter.get(), from.get(), to.get());
    return true;
}

void PictureOutput::take(GstSample* rawSample) {
    const GstSampleHandle sample(rawSample);
    GstVideoInfo info;
    const auto* caps = sample == nullptr ? nullptr : gst_sample_get_caps(sample.get());
    if (caps == nullptr || !gst_video_info_from_caps(&info, caps))
        return;
    ++m_count;
    const std::lock_guard lock(m_mutex);
    if (!m_shown || !prepare(info))
        return;
    const auto fill = [&](std::uint32_t* pixels) {
        return convert(gst_sample_get_buffer(sample.get()), pixels);
    };
    if (m_memory.write(m_to.width, m_to.height, fill) == Host::Written::First)
        m_changed(true);
}

void PictureOutput::show(bool shown) {
    const std::lock_guard lock(m_mutex);
    if (m_shown && !shown) {
        m_memory.clear();
        m_changed(false);
    }
    m_shown = shown;
}

GstElement* PictureOutput::makeSink() {
    auto* sink = gst_element_factory_make("appsink", nullptr);
    const GstCapsHandle caps(gst_caps_from_string("video/x-raw"));
    g_object_set(sink, "caps", caps.get(), "max-buffers", 1u, "drop", TRUE, "sync", TRUE, "qos", TRUE,
                 "enable-last-sample", FALSE, nullptr);
    GstAppSinkCallbacks callbacks{};
    // The first picture after a seek, also while paused.
    callbacks.new_preroll = [](GstAppSink* from, gpointer self) {
        static_cast<PictureOutput*>(self)->take(gst_app_sink_pull_preroll(from));
        return GST_FLOW_OK;
    };
    callbacks.new_sample = [](GstAppSink* from, gpointer self) {
        static_cast<PictureOutput*>(self)->take(gst_app_sink_pull_sample(from));
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    return sink;
}

}  // namespace Media
