#include "Host/Receiver/Media/PictureOutput.h"

#include <gst/app/gstappsink.h>
#include <gst/video/video.h>

namespace Receiver {

namespace {

using GatePointer = std::shared_ptr<PictureGate>;

void show(PictureGate& gate, GstSample* sample) {
    GstVideoInfo info;
    GstVideoFrame frame;
    const auto* caps = sample == nullptr ? nullptr : gst_sample_get_caps(sample);
    if (caps == nullptr || !gst_video_info_from_caps(&info, caps) ||
        !gst_video_frame_map(&frame, &info, gst_sample_get_buffer(sample), GST_MAP_READ))
        return;
    gate.frame(GST_VIDEO_FRAME_WIDTH(&frame), GST_VIDEO_FRAME_HEIGHT(&frame),
               GST_VIDEO_FRAME_PLANE_STRIDE(&frame, 0),
               static_cast<const std::uint8_t*>(GST_VIDEO_FRAME_PLANE_DATA(&frame, 0)));
    gst_video_frame_unmap(&frame);
}

// The first picture after a seek, also while paused.
GstFlowReturn onPreroll(GstAppSink* sink, gpointer gate) {
    const GstSampleHandle sample(gst_app_sink_pull_preroll(sink));
    show(**static_cast<GatePointer*>(gate), sample.get());
    return GST_FLOW_OK;
}

GstFlowReturn onSample(GstAppSink* sink, gpointer gate) {
    const GstSampleHandle sample(gst_app_sink_pull_sample(sink));
    show(**static_cast<GatePointer*>(gate), sample.get());
    return GST_FLOW_OK;
}

}  // namespace

void PictureGate::frame(int width, int height, int stride, const std::uint8_t* bgrx) {
    const std::lock_guard lock(m_mutex);
    if (m_sink != nullptr && m_open)
        m_sink->frame(width, height, stride, bgrx);
}

void PictureGate::setOpen(bool open) {
    const std::lock_guard lock(m_mutex);
    if (m_sink != nullptr && m_open && !open)
        m_sink->clear();
    m_open = open;
}

void PictureGate::detach() {
    const std::lock_guard lock(m_mutex);
    if (m_sink != nullptr)
        m_sink->clear();
    m_sink = nullptr;
}

GstElement* makeVideoSink(const GatePointer& gate) {
    if (gate == nullptr) {
        auto* sink = gst_element_factory_make("fakesink", nullptr);
        g_object_set(sink, "sync", TRUE, "qos", TRUE, nullptr);
        return sink;
    }
    auto* sink = gst_element_factory_make("appsink", nullptr);
    const GstCapsHandle caps(gst_caps_from_string("video/x-raw,format=BGRx"));
    g_object_set(sink, "caps", caps.get(), "max-buffers", 1u, "drop", TRUE, "sync", TRUE, "qos", TRUE,
                 "enable-last-sample", FALSE, nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_preroll = onPreroll;
    callbacks.new_sample = onSample;
    gst_app_sink_set_callbacks(
        GST_APP_SINK(sink), &callbacks, std::make_unique<GatePointer>(gate).release(),
        [](gpointer held) { const std::unique_ptr<GatePointer> released(static_cast<GatePointer*>(held)); });
    return sink;
}

}  // namespace Receiver
