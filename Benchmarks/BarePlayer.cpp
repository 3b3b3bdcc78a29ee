// The yardstick of the way to the first picture: GStreamer's own player, started by nobody but itself. Reads
// one address a line; for each it plays until the pipeline does, and prints how many milliseconds that took.
#include <chrono>
#include <cstdio>
#include <iostream>
#include <memory>
#include <string>

#include <gst/gst.h>

namespace {

// As soon as nothing has come for so long, nothing will.
constexpr GstClockTime kLimit = 10 * GST_SECOND;

struct Free {
    void operator()(GstElement* element) const { gst_object_unref(element); }
    void operator()(GstBus* bus) const { gst_object_unref(bus); }
    void operator()(GstMessage* message) const { gst_message_unref(message); }
    void operator()(GstCaps* caps) const { gst_caps_unref(caps); }
};

template <typename T>
using Owned = std::unique_ptr<T, Free>;

// What follows is the pipeline of the receiver's player, down to the sinks; nobody looks at the pictures.
GstElement* makeVideoSink() {
    GstElement* sink = gst_element_factory_make("appsink", nullptr);
    const Owned<GstCaps> caps(gst_caps_from_string("video/x-raw,format=BGRx"));
    g_object_set(sink, "caps", caps.get(), "max-buffers", 1u, "drop", TRUE, "sync", TRUE, "qos", TRUE,
                 "enable-last-sample", FALSE, nullptr);
    return sink;
}

GstElement* makeAudioSink() {
    GstElement* sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "sync", TRUE, nullptr);
    return sink;
}

Owned<GstElement> makePipeline(const std::string& address) {
    GstElement* pipeline = gst_element_factory_make("playbin3", nullptr);
    gst_util_set_object_arg(G_OBJECT(pipeline), "flags", "video+audio+soft-volume+buffering");
    g_object_set(pipeline, "uri", address.c_str(), "video-sink", makeVideoSink(), "audio-sink",
                 makeAudioSink(), "audio-filter", gst_element_factory_make("scaletempo", nullptr), nullptr);
    return Owned<GstElement>(pipeline);
}

bool plays(GstMessage* message, const GstElement* pipeline) {
    if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_STATE_CHANGED ||
        GST_MESSAGE_SRC(message) != GST_OBJECT_CAST(pipeline))
        return false;
    GstState state;
    gst_message_parse_state_changed(message, nullptr, &state, nullptr);
    return state == GST_STATE_PLAYING;
}

bool playUntilItPlays(GstElement* pipeline) {
    const Owned<GstBus> bus(gst_element_get_bus(pipeline));
    gst_element_set_state(pipeline, GST_STATE_PLAYING);
    constexpr auto kTypes = static_cast<GstMessageType>(GST_MESSAGE_STATE_CHANGED | GST_MESSAGE_ERROR);
    for (;;) {
        const Owned<GstMessage> message(gst_bus_timed_pop_filtered(bus.get(), kLimit, kTypes));
        if (!message || GST_MESSAGE_TYPE(message.get()) == GST_MESSAGE_ERROR)
            return false;
        if (plays(message.get(), pipeline))
            return true;
    }
}

}  // namespace

int main(int argc, char** argv) {
    gst_init(&argc, &argv);
    for (std::string address; std::getline(std::cin, address);) {
        const auto begin = std::chrono::steady_clock::now();
        const Owned<GstElement> pipeline = makePipeline(address);
        const bool played = playUntilItPlays(pipeline.get());
        const std::chrono::duration<double, std::milli> taken = std::chrono::steady_clock::now() - begin;
        gst_element_set_state(pipeline.get(), GST_STATE_NULL);
        if (!played) {
            std::cerr << "It does not play: " << address << '\n';
            return 1;
        }
        std::printf("%.3f\n", taken.count());
        std::fflush(stdout);
    }
}
