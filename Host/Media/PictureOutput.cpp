#include "Host/Media/PictureOutput.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

namespace Media {

void PictureOutput::take(GstSample* rawSample) {
    const GstSampleHandle sample(rawSample);
    GstVideoInfo info;
    GstVideoFrame frame;
    const auto* caps = sample == nullptr ? nullptr : gst_sample_get_caps(sample.get());
    if (caps == nullptr || !gst_video_info_from_caps(&info, caps) ||
        !gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample.get()), GST_MAP_READ))
        return;
    ++m_count;
    {
        const std::lock_guard lock(m_mutex);
        if (m_shown && m_memory.write(GST_VIDEO_FRAME_WIDTH(&frame), GST_VIDEO_FRAME_HEIGHT(&frame),
                                      GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0),
                                      static_cast<const std::uint8_t*>(
                                          GST_VIDEO_FRAME_PLANE_DATA(&frame, 0))) == Host::Written::First)
            m_changed(true);
    }
    gst_video_frame_unmap(&frame);
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
    const GstCapsHandle caps(gst_caps_from_string("video/x-raw,format=BGRx"));
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
