#include "Host/Receiver/Media/Pipeline.h"

#include <algorithm>
#include <atomic>
#include <limits>

#include "Host/Receiver/Media/SoundDevice.h"

namespace Receiver {

namespace {

using MessageHandler = Pipeline::MessageHandler;

// Subtitles are listed but not drawn: GStreamer's way of drawing them needs a font renderer in the picture.
// Nor has playbin a volume of its own here: it never lets go of the element that it makes for it.
constexpr char playbinFlags[] = "video+audio+buffering";
constexpr char volumeName[] = "volume";

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
    const auto volume = std::string("volume name=") + volumeName;
    return gst_parse_bin_from_description((tempo == nullptr ? volume : volume + " ! scaletempo").c_str(),
                                          TRUE, nullptr);
}

GstObjectHandle<GstElement> volumeOf(GstElement& playbin) {
    GstElement* filter = nullptr;
    g_object_get(&playbin, "audio-filter", &filter, nullptr);
    const GstObjectHandle<GstElement> owned(filter);
    return GstObjectHandle<GstElement>(gst_bin_get_by_name(GST_BIN(filter), volumeName));
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

void onSource(GstElement*, GstElement* source, gpointer) {
    const GstObjectHandle<GstPad> pad(gst_element_get_static_pad(source, "src"));
    const char* kind = gst_element_get_metadata(source, GST_ELEMENT_METADATA_KLASS);
    if (pad != nullptr && kind != nullptr && g_strrstr(kind, "Network") != nullptr)
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

void onElement(GstBin*, GstBin*, GstElement* element, gpointer) {
    const char* kind = gst_element_get_metadata(element, GST_ELEMENT_METADATA_KLASS);
    const GstObjectHandle<GstPad> pad(gst_element_get_static_pad(element, "sink"));
    if (pad != nullptr && kind != nullptr && g_strrstr(kind, "Demuxer") != nullptr)
        gst_pad_add_probe(pad.get(),
                          static_cast<GstPadProbeType>(GST_PAD_PROBE_TYPE_PULL | GST_PAD_PROBE_TYPE_BUFFER),
                          waitForTrial, element, nullptr);
}

GstElement* makePlaybin(const std::string& url, const std::shared_ptr<PictureGate>& picture,
                        const std::string& sound) {
    auto* playbin = gst_element_factory_make("playbin3", nullptr);
    if (playbin == nullptr)
        return nullptr;
    gst_object_ref_sink(playbin);
    gst_util_set_object_arg(G_OBJECT(playbin), "flags", playbinFlags);
    g_object_set(playbin, "uri", url.c_str(), "video-sink", makeVideoSink(picture), "audio-sink",
                 makeSoundSink(sound), "audio-filter", makeSoundFilter(), nullptr);
    g_signal_connect(playbin, "source-setup", G_CALLBACK(onSource), nullptr);
    g_signal_connect(playbin, "deep-element-added", G_CALLBACK(onElement), nullptr);
    return playbin;
}

void say(GstElement& element, const char* what) {
    gst_element_post_message(
        &element, gst_message_new_application(GST_OBJECT(&element), gst_structure_new_empty(what)));
}

std::uint32_t milliseconds(gint64 time) {
    return static_cast<std::uint32_t>(
        std::clamp<gint64>(time / GST_MSECOND, 0, std::numeric_limits<std::uint32_t>::max()));
}

}  // namespace

struct Pipeline::Core {
    // Made and dropped by the work queue; whoever else sees it may use it for as long as the Pipeline lives.
    GstObjectHandle<GstElement> owned;
    std::atomic<GstElement*> element = nullptr;
    // The main thread's alone. Shared so that a handler survives that ends its own pipeline.
    std::shared_ptr<MessageHandler> handler;

    void deliver(GstMessage* message) const {
        const auto current = handler;
        if (current != nullptr)
            (*current)(message);
    }
};

Pipeline::Pipeline(const std::string& url, std::shared_ptr<PictureGate> picture, const std::string& sound,
                   MessageHandler onMessage)
    : m_core(std::make_shared<Core>()), m_picture(std::move(picture)) {
    m_core->handler = std::make_shared<MessageHandler>(std::move(onMessage));
    m_queue.post([core = m_core, gate = m_picture, url, sound] {
        // The first time this may look through all of GStreamer's plugins.
        if (gst_init_check(nullptr, nullptr, nullptr))
            core->owned.reset(makePlaybin(url, gate, sound));
        using Holder = std::shared_ptr<Core>;
        auto* holder = std::make_unique<Holder>(core).release();
        const auto release = [](gpointer held) {
            const std::unique_ptr<Holder> released(static_cast<Holder*>(held));
        };
        if (core->owned == nullptr) {
            const auto tell = [](gpointer held) -> gboolean {
                (*static_cast<Holder*>(held))->deliver(nullptr);
                return G_SOURCE_REMOVE;
            };
            g_idle_add_full(G_PRIORITY_DEFAULT, tell, holder, release);
            return;
        }
        const auto pass = [](GstBus*, GstMessage* message, gpointer held) -> gboolean {
            const auto living = *static_cast<Holder*>(held);
            living->deliver(message);
            return G_SOURCE_CONTINUE;
        };
        const GstObjectHandle<GstBus> bus(gst_element_get_bus(core->owned.get()));
        gst_bus_add_watch_full(bus.get(), G_PRIORITY_DEFAULT, pass, holder, release);
        core->element = core->owned.get();
    });
}

Pipeline::~Pipeline() {
    m_core->handler.reset();
    if (m_picture != nullptr)
        m_picture->detach();
    m_queue.post([core = m_core] {
        if (core->owned == nullptr)
            return;
        gst_element_set_state(core->owned.get(), GST_STATE_NULL);
        const GstObjectHandle<GstBus> bus(gst_element_get_bus(core->owned.get()));
        gst_bus_remove_watch(bus.get());
        // Nobody reads what is still in it; messages hold elements.
        gst_bus_set_flushing(bus.get(), TRUE);
        core->owned.reset();
    });
}

void Pipeline::post(std::function<void(GstElement&)> work) {
    m_queue.post([core = m_core, work = std::move(work)] {
        if (core->owned != nullptr)
            work(*core->owned);
    });
}

void Pipeline::setState(GstState state) {
    post([state](GstElement& element) {
        const auto result = gst_element_set_state(&element, state);
        if (result == GST_STATE_CHANGE_FAILURE)
            say(element, PipelineSays::StateChangeFailed);
        if (result == GST_STATE_CHANGE_NO_PREROLL)
            say(element, PipelineSays::IsLive);
    });
}

void Pipeline::seek(double rate, std::uint32_t milliseconds, Seek mode) {
    const auto flags = static_cast<GstSeekFlags>(
        GST_SEEK_FLAG_FLUSH |
        (mode == Seek::Exact ? GST_SEEK_FLAG_ACCURATE
                             : GST_SEEK_FLAG_KEY_UNIT | GST_SEEK_FLAG_TRICKMODE |
                                   GST_SEEK_FLAG_TRICKMODE_KEY_UNITS | GST_SEEK_FLAG_TRICKMODE_NO_AUDIO));
    const auto start = static_cast<gint64>(milliseconds) * static_cast<gint64>(GST_MSECOND);
    const auto openEnd = static_cast<gint64>(GST_CLOCK_TIME_NONE);
    post([rate, start, openEnd, flags](GstElement& element) {
        if (!gst_element_seek(&element, rate, GST_FORMAT_TIME, flags, GST_SEEK_TYPE_SET, start,
                              GST_SEEK_TYPE_SET, openEnd))
            say(element, PipelineSays::SeekFailed);
    });
}

void Pipeline::selectStreams(std::vector<std::string> ids) {
    post([ids = std::move(ids)](GstElement& element) {
        GList* list = nullptr;
        for (const auto& id : ids)
            list = g_list_append(list, const_cast<char*>(id.c_str()));
        gst_element_send_event(&element, gst_event_new_select_streams(list));
        g_list_free(list);
    });
}

void Pipeline::setVolume(double volume) {
    post([volume](GstElement& element) { g_object_set(volumeOf(element).get(), "volume", volume, nullptr); });
}

void Pipeline::setMuted(bool muted) {
    post([muted](GstElement& element) {
        g_object_set(volumeOf(element).get(), "mute", muted ? TRUE : FALSE, nullptr);
    });
}

void Pipeline::setPictureShown(bool shown) {
    if (m_picture != nullptr)
        m_picture->setOpen(shown);
}

void Pipeline::recalculateLatency() {
    post([](GstElement& element) { gst_bin_recalculate_latency(GST_BIN(&element)); });
}

std::optional<std::uint32_t> Pipeline::position() const {
    auto* element = m_core->element.load();
    gint64 time = 0;
    if (element == nullptr || !gst_element_query_position(element, GST_FORMAT_TIME, &time) || time < 0)
        return std::nullopt;
    return milliseconds(time);
}

std::optional<std::uint32_t> Pipeline::duration() const {
    auto* element = m_core->element.load();
    gint64 time = 0;
    if (element == nullptr || !gst_element_query_duration(element, GST_FORMAT_TIME, &time) || time < 0)
        return std::nullopt;
    return milliseconds(time);
}

bool Pipeline::isSeekable() const {
    auto* element = m_core->element.load();
    if (element == nullptr)
        return false;
    const GstQueryHandle query(gst_query_new_seeking(GST_FORMAT_TIME));
    gboolean seekable = FALSE;
    if (gst_element_query(element, query.get()))
        gst_query_parse_seeking(query.get(), nullptr, &seekable, nullptr, nullptr);
    return seekable != FALSE;
}

bool Pipeline::isAdaptive() const {
    auto* element = m_core->element.load();
    if (element == nullptr)
        return false;
    const std::unique_ptr<GstIterator, Host::GFree<&gst_iterator_free>> all(
        gst_bin_iterate_recurse(GST_BIN(element)));
    const auto compare = [](gconstpointer item, gconstpointer) -> gint {
        auto* candidate = GST_ELEMENT(g_value_get_object(static_cast<const GValue*>(item)));
        const char* kind = gst_element_get_metadata(candidate, GST_ELEMENT_METADATA_KLASS);
        return kind != nullptr && g_strrstr(kind, "Adaptive") != nullptr ? 0 : 1;
    };
    GValue found = G_VALUE_INIT;
    const bool any = gst_iterator_find_custom(all.get(), compare, &found, nullptr) != FALSE;
    if (any)
        g_value_unset(&found);
    return any;
}

bool Pipeline::isSource(GstMessage* message) const {
    auto* element = m_core->element.load();
    return element != nullptr && GST_MESSAGE_SRC(message) == GST_OBJECT(element);
}

}  // namespace Receiver
