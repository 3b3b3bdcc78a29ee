#include "Host/Media/Pipeline.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <limits>

#include "Host/Media/MediaErrors.h"

namespace Media {

namespace {

namespace fs = std::filesystem;

// Playbin has no volume of its own here: it never lets go of the element that it makes for it.
constexpr char kPlaybinFlags[] = "video+audio+text+buffering";
constexpr char kVolumeName[] = "volume";

bool hasSoundServer() {
    if (std::getenv("PULSE_SERVER") != nullptr)
        return true;
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    std::error_code error;
    return runtime != nullptr && fs::exists(fs::path(runtime) / "pulse/native", error);
}

// Whether there is anything that sound could come out of. GStreamer's own search for a device takes longer
// and complains on the way.
bool hasSoundDevice() {
    if (hasSoundServer())
        return true;
    // Devices that play end in "p": pcmC0D0p.
    std::error_code error;
    const fs::directory_iterator devices("/dev/snd", error);
    return !error && std::any_of(begin(devices), end(devices), [](const fs::directory_entry& device) {
        const auto name = device.path().filename().string();
        return name.starts_with("pcm") && name.ends_with("p");
    });
}

GstElement* makeSoundSink(const std::string& description) {
    if (!description.empty())
        return gst_parse_bin_from_description(description.c_str(), TRUE, nullptr);
    if (hasSoundDevice())
        return gst_element_factory_make("autoaudiosink", nullptr);
    auto* sink = gst_element_factory_make("fakesink", nullptr);
    g_object_set(sink, "sync", TRUE, nullptr);
    return sink;
}

// Volume, and the pitch kept at other speeds.
GstElement* makeSoundFilter() {
    const GstObjectHandle<GstElementFactory> tempo(gst_element_factory_find("scaletempo"));
    const auto volume = std::string("volume name=") + kVolumeName;
    return gst_parse_bin_from_description((tempo == nullptr ? volume : volume + " ! scaletempo").c_str(),
                                          TRUE, nullptr);
}

// A source that is asked for a time first empties the pipeline and then says that it knows bytes only. What
// it reads before the demuxer asks for the right bytes belongs nowhere, and some demuxers stumble over it.
gboolean refuseTimes(GstPad* pad, GstObject* parent, GstEvent* event) {
    GstFormat format = GST_FORMAT_BYTES;
    if (GST_EVENT_TYPE(event) == GST_EVENT_SEEK)
        gst_event_parse_seek(event, nullptr, &format, nullptr, nullptr, nullptr, nullptr, nullptr);
    if (format == GST_FORMAT_BYTES)
        return reinterpret_cast<GstPadEventFunction>(pad->eventdata)(pad, parent, event);
    gst_event_unref(event);
    return FALSE;
}

bool isKind(GstElement* element, const char* kind) {
    const char* kinds = gst_element_get_metadata(element, GST_ELEMENT_METADATA_KLASS);
    return kinds != nullptr && g_strrstr(kinds, kind) != nullptr;
}

void onSource(GstElement*, GstElement* source, gpointer userAgent) {
    // Readers of lists ask for the segments as their source asked for the list.
    if (g_object_class_find_property(G_OBJECT_GET_CLASS(source), "user-agent"))
        g_object_set(source, "user-agent", static_cast<const std::string*>(userAgent)->c_str(), nullptr);
    const GstObjectHandle<GstPad> pad(gst_element_get_static_pad(source, "src"));
    if (pad != nullptr && isKind(source, "Network"))
        gst_pad_set_event_function_full(pad.get(), refuseTimes,
                                        reinterpret_cast<gpointer>(GST_PAD_EVENTFUNC(pad.get())), nullptr);
}

bool isSettled(GstElement* element) {
    GST_OBJECT_LOCK(element);
    const bool settled =
        GST_STATE(element) >= GST_STATE_PAUSED && GST_STATE_PENDING(element) == GST_STATE_VOID_PENDING;
    GST_OBJECT_UNLOCK(element);
    return settled;
}

// A demuxer that reads for itself begins while the bin around it is still trying it out, and until then the
// bin keeps the errors of its elements to itself: a broken file's would never be heard. So the first read
// waits for the trial to be over, which takes far less than the limit.
GstPadProbeReturn waitForTrial(GstPad*, GstPadProbeInfo*, gpointer demuxer) {
    constexpr int limit = 1000;
    for (int millisecond = 0; millisecond < limit && !isSettled(GST_ELEMENT(demuxer)); ++millisecond)
        g_usleep(G_USEC_PER_SEC / 1000);
    return GST_PAD_PROBE_REMOVE;
}

// The list of a stream in segments, on its way to the element that reads it when it is whole.
GstPadProbeReturn noteList(GstPad* pad, GstPadProbeInfo* info, gpointer rawList) {
    constexpr gsize longest = 4 * 1024 * 1024;
    auto* list = static_cast<GByteArray*>(rawList);
    if ((GST_PAD_PROBE_INFO_TYPE(info) & GST_PAD_PROBE_TYPE_BUFFER) != 0) {
        GstMapInfo bytes;
        auto* buffer = GST_PAD_PROBE_INFO_BUFFER(info);
        if (list->len + gst_buffer_get_size(buffer) > longest ||
            !gst_buffer_map(buffer, &bytes, GST_MAP_READ))
            return GST_PAD_PROBE_REMOVE;
        g_byte_array_append(list, bytes.data, static_cast<guint>(bytes.size));
        gst_buffer_unmap(buffer, &bytes);
        return GST_PAD_PROBE_OK;
    }
    if (GST_EVENT_TYPE(GST_PAD_PROBE_INFO_EVENT(info)) != GST_EVENT_EOS)
        return GST_PAD_PROBE_OK;
    const Host::GBytesHandle text(g_bytes_new(list->data, list->len));
    const GstObjectHandle<GstElement> reader(gst_pad_get_parent_element(pad));
    gst_element_post_message(
        reader.get(), gst_message_new_application(
                          GST_OBJECT(reader.get()),
                          gst_structure_new(PipelineSays::List, "text", G_TYPE_BYTES, text.get(), nullptr)));
    return GST_PAD_PROBE_REMOVE;
}

void onElement(GstBin*, GstBin*, GstElement* element, gpointer) {
    const GstObjectHandle<GstPad> pad(gst_element_get_static_pad(element, "sink"));
    if (pad != nullptr && isKind(element, "Demuxer"))
        gst_pad_add_probe(pad.get(),
                          static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_PULL | GST_PAD_PROBE_TYPE_BUFFER),
                          waitForTrial, element, nullptr);
    if (pad != nullptr && isKind(element, "Adaptive"))
        gst_pad_add_probe(
            pad.get(),
            static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_BUFFER | GST_PAD_PROBE_TYPE_EVENT_DOWNSTREAM),
            noteList, g_byte_array_new(),
            [](gpointer list) { g_byte_array_unref(static_cast<GByteArray*>(list)); });
}

// What readers of the network itself read.
bool isNetworkReader(GstElementFactory* factory) {
    constexpr const char* schemes[] = {"http", "https", "icy", "icyx"};
    const auto* protocols = gst_element_factory_get_uri_protocols(factory);
    return std::all_of(
        protocols, protocols + g_strv_length(const_cast<char**>(protocols)), [&](const char* protocol) {
            return std::any_of(std::begin(schemes), std::end(schemes),
                               [&](const char* scheme) { return g_ascii_strcasecmp(protocol, scheme) == 0; });
        });
}

// Lists of segments, references to other media and redirections may name any address. What this process has
// no reader for, nothing in it can read.
void forgetReadersOfLocalThings() {
    auto* registry = gst_registry_get();
    GList* all = gst_registry_get_feature_list(registry, GST_TYPE_ELEMENT_FACTORY);
    for (auto* each = all; each != nullptr; each = each->next) {
        auto* factory = GST_ELEMENT_FACTORY(each->data);
        if (gst_element_factory_get_uri_type(factory) == GST_URI_SRC && !isNetworkReader(factory))
            gst_registry_remove_feature(registry, GST_PLUGIN_FEATURE(factory));
    }
    gst_plugin_feature_list_free(all);
}

std::uint32_t milliseconds(gint64 time) {
    return static_cast<std::uint32_t>(
        std::clamp<gint64>(time / GST_MSECOND, 0, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

Pipeline::Pipeline(PictureOutput& picture, SubtitleOutput& subtitles, const std::string& sound,
                   MessageHandler onMessage)
    : m_picture(picture),
      m_handler(std::move(onMessage)),
      m_element(gst_element_factory_make("playbin3", nullptr)) {
    auto* filter = makeSoundFilter();
    m_volume = gst_bin_get_by_name(GST_BIN(filter), kVolumeName);
    gst_util_set_object_arg(G_OBJECT(m_element), "flags", kPlaybinFlags);
    g_object_set(m_element, "video-sink", picture.makeSink(), "text-sink", subtitles.makeSink(), "audio-sink",
                 makeSoundSink(sound), "audio-filter", filter, nullptr);
    g_signal_connect(m_element, "source-setup", G_CALLBACK(onSource), &m_userAgent);
    g_signal_connect(m_element, "deep-element-added", G_CALLBACK(onElement), nullptr);
    const auto run = [](gpointer work, gpointer) {
        const std::unique_ptr<std::function<void()>> owned(static_cast<std::function<void()>*>(work));
        (*owned)();
    };
    m_worker = g_thread_pool_new(run, nullptr, 1, FALSE, nullptr);
    const auto pass = [](GstBus*, GstMessage* message, gpointer self) -> gboolean {
        static_cast<Pipeline*>(self)->m_handler(message);
        return G_SOURCE_CONTINUE;
    };
    const GstObjectHandle<GstBus> bus(gst_element_get_bus(m_element));
    gst_bus_add_watch(bus.get(), pass, this);
}

void Pipeline::post(std::function<void()> work) {
    g_thread_pool_push(m_worker, std::make_unique<std::function<void()>>(std::move(work)).release(), nullptr);
}

void Pipeline::say(const char* what) {
    gst_element_post_message(
        m_element, gst_message_new_application(GST_OBJECT(m_element), gst_structure_new_empty(what)));
}

void Pipeline::open(const std::string& url) {
    if (isRemote(url))
        forgetReadersOfLocalThings();
    g_object_set(m_element, "uri", url.c_str(), nullptr);
    setState(GST_STATE_PAUSED);
}

void Pipeline::setState(GstState state) {
    post([this, state] {
        const auto result = gst_element_set_state(m_element, state);
        if (result == GST_STATE_CHANGE_FAILURE)
            say(PipelineSays::StateChangeFailed);
        if (result == GST_STATE_CHANGE_NO_PREROLL)
            say(PipelineSays::IsLive);
    });
}

void Pipeline::seek(double rate, std::uint32_t milliseconds, Seek mode) {
    const auto flags = static_cast<GstSeekFlags>(
        GST_SEEK_FLAG_FLUSH |
        (mode == Seek::Exact ? GST_SEEK_FLAG_ACCURATE
                             : GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_TRICKMODE |
                                   GST_SEEK_FLAG_TRICKMODE_KEY_UNITS | GST_SEEK_FLAG_TRICKMODE_NO_AUDIO));
    const auto start = static_cast<gint64>(milliseconds) * static_cast<gint64>(GST_MSECOND);
    post([this, rate, start, flags] {
        const auto openEnd = static_cast<gint64>(GST_CLOCK_TIME_NONE);
        m_picturesBefore = m_picture.count();
        if (!gst_element_seek(m_element, rate, GST_FORMAT_TIME, flags, GST_SEEK_TYPE_SET, start,
                              GST_SEEK_TYPE_SET, openEnd))
            say(PipelineSays::SeekFailed);
    });
}

void Pipeline::selectStreams(std::vector<std::string> ids) {
    post([this, ids = std::move(ids)] {
        GList* list = nullptr;
        for (const auto& id : ids)
            list = g_list_append(list, const_cast<char*>(id.c_str()));
        gst_element_send_event(m_element, gst_event_new_select_streams(list));
        g_list_free(list);
    });
}

void Pipeline::setVolume(double volume) {
    g_object_set(m_volume, "volume", volume, nullptr);
}

void Pipeline::setMuted(bool muted) {
    g_object_set(m_volume, "mute", muted ? TRUE : FALSE, nullptr);
}

void Pipeline::recalculateLatency() {
    post([this] { gst_bin_recalculate_latency(GST_BIN(m_element)); });
}

std::optional<std::uint32_t> Pipeline::position() const {
    gint64 time = 0;
    if (!gst_element_query_position(m_element, GST_FORMAT_TIME, &time) || time < 0)
        return std::nullopt;
    return milliseconds(time);
}

std::optional<std::uint32_t> Pipeline::duration() const {
    gint64 time = 0;
    if (!gst_element_query_duration(m_element, GST_FORMAT_TIME, &time) || time < 0)
        return std::nullopt;
    return milliseconds(time);
}

bool Pipeline::isSeekable() const {
    const GstQueryHandle query(gst_query_new_seeking(GST_FORMAT_TIME));
    gboolean seekable = FALSE;
    if (gst_element_query(m_element, query.get()))
        gst_query_parse_seeking(query.get(), nullptr, &seekable, nullptr, nullptr);
    return seekable != FALSE;
}

bool Pipeline::isAdaptive() const {
    const std::unique_ptr<GstIterator, Host::GFree<&gst_iterator_free>> all(
        gst_bin_iterate_recurse(GST_BIN(m_element)));
    const auto compare = [](gconstpointer item, gconstpointer) -> gint {
        auto* candidate = GST_ELEMENT(g_value_get_object(static_cast<const GValue*>(item)));
        return isKind(candidate, "Adaptive") ? 0 : 1;
    };
    GValue found = G_VALUE_INIT;
    const bool any = gst_iterator_find_custom(all.get(), compare, &found, nullptr) != FALSE;
    if (any)
        g_value_unset(&found);
    return any;
}

bool Pipeline::isSource(GstMessage* message) const {
    return GST_MESSAGE_SRC(message) == GST_OBJECT(m_element);
}

}  // namespace Media
