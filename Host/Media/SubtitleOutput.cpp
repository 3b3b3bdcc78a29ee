#include "Host/Media/SubtitleOutput.h"

#include <gst/app/gstappsink.h>

namespace Media {

namespace {

// More than fits on a screen.
constexpr gsize kLongestText = 1000;
// Of a text that does not say how long it is to be read.
constexpr GstClockTime kUsualTime = 5 * GST_SECOND;

// Without what makes it italic or coloured.
std::string plainText(const std::string& markup) {
    std::string text;
    GMarkupParser parser{};
    parser.text = [](GMarkupParseContext*, const char* part, gsize length, gpointer all, GError**) {
        static_cast<std::string*>(all)->append(part, length);
    };
    auto* context = g_markup_parse_context_new(&parser, G_MARKUP_DEFAULT_FLAGS, &text, nullptr);
    const auto whole = "<text>" + markup + "</text>";
    const bool isMarkup = g_markup_parse_context_parse(context, whole.c_str(), -1, nullptr) != FALSE;
    g_markup_parse_context_free(context);
    return isMarkup ? text : markup;
}

std::string textOf(GstBuffer* buffer, bool isMarkup) {
    GstMapInfo bytes;
    if (!gst_buffer_map(buffer, &bytes, GST_MAP_READ))
        return {};
    const auto* data = reinterpret_cast<const char*>(bytes.data);
    const std::string written(data, strnlen(data, std::min(bytes.size, kLongestText)));
    gst_buffer_unmap(buffer, &bytes);
    const Host::GChars valid(g_utf8_make_valid(written.c_str(), -1));
    auto text = isMarkup ? plainText(valid.get()) : std::string(valid.get());
    const auto end = text.find_last_not_of(" \r\n");
    return end == std::string::npos ? std::string() : text.substr(0, end + 1);
}

}  // namespace

void SubtitleOutput::take(GstSample* rawSample) {
    const GstSampleHandle sample(rawSample);
    auto* buffer = sample == nullptr ? nullptr : gst_sample_get_buffer(sample.get());
    if (buffer == nullptr || !GST_BUFFER_PTS_IS_VALID(buffer) || gst_sample_get_caps(sample.get()) == nullptr)
        return;
    const auto* format = gst_caps_get_structure(gst_sample_get_caps(sample.get()), 0);
    const auto from = gst_segment_to_stream_time(gst_sample_get_segment(sample.get()), GST_FORMAT_TIME,
                                                 GST_BUFFER_PTS(buffer));
    if (from == GST_CLOCK_TIME_NONE)
        return;
    const auto until =
        from + (GST_BUFFER_DURATION_IS_VALID(buffer) ? GST_BUFFER_DURATION(buffer) : kUsualTime);
    m_due({textOf(buffer, g_strcmp0(gst_structure_get_string(format, "format"), "pango-markup") == 0),
           static_cast<std::uint32_t>(from / GST_MSECOND), static_cast<std::uint32_t>(until / GST_MSECOND)});
}

GstElement* SubtitleOutput::makeSink() {
    auto* sink = gst_element_factory_make("appsink", nullptr);
    const GstCapsHandle caps(gst_caps_from_string("text/x-raw,format={utf8,pango-markup}"));
    // A film need not begin with something to read: nothing waits for it.
    g_object_set(sink, "caps", caps.get(), "max-buffers", 1u, "drop", TRUE, "sync", TRUE, "async", FALSE,
                 "enable-last-sample", FALSE, nullptr);
    GstAppSinkCallbacks callbacks{};
    callbacks.new_sample = [](GstAppSink* from, gpointer self) {
        static_cast<SubtitleOutput*>(self)->take(gst_app_sink_pull_sample(from));
        return GST_FLOW_OK;
    };
    gst_app_sink_set_callbacks(GST_APP_SINK(sink), &callbacks, this, nullptr);
    return sink;
}

}  // namespace Media
