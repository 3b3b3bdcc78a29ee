#include "Host/Media/Film.h"

#include <algorithm>

#include <gst/pbutils/missing-plugins.h>

#include "Host/Media/MediaErrors.h"
#include "Host/Receiver/World/ReceiverEvents.h"

namespace Media {

using namespace Receiver;

namespace {

// Beyond this only key frames are shown, without sound.
constexpr double kFastestWithSound = 2.0;
constexpr std::uint32_t kStepMs = 200;
constexpr std::uint32_t kGlanceMs = 500;
constexpr int kMostStillGlances = 6;
// How often, and for how many times, a length is asked for that is not known yet; that of a live stream never
// is.
constexpr std::uint32_t kLookMs = 50;
constexpr int kMostLooks = 20;
// The tracks of a medium do not end together to the millisecond, and a demuxer that is sent behind the end of
// one of them never shows the end of the medium.
constexpr std::uint32_t kNearestToEndMs = 100;
// A film that has come to a place asked for exactly is this much before it at most, and not long behind it.
constexpr std::uint32_t kSeekTolerance = 100;
constexpr std::uint32_t kLatestLookMs = 1000;
// The part of the limit after which a position is asked for once more.
constexpr std::uint32_t kPatienceShare = 5;

// A medium that ends this much before its end was cut off.
std::uint32_t tolerance(std::uint32_t duration) {
    return 1000 + duration / 20;
}

}  // namespace

void Film::load(const std::string& url, double speed, std::uint32_t limitMs) {
    m_url = url;
    m_speed = speed;
    m_limitMs = limitMs;
    m_limit.start(limitMs, [this] {
        fail(isRemote(m_url) ? MediaError::CannotConnect : MediaError::Corrupt,
             "nothing to be shown came" + withinLimit());
    });
    m_pipeline.open(url);
}

void Film::play(double speed) {
    if (!isRolling(m_state)) {
        m_speed = speed;
        return;
    }
    if (speed != m_speed) {
        // Where a rewinding has come to is where everything else goes on.
        const auto here = position();
        const bool wasRewinding = m_rewinding.has_value();
        m_rewinding.reset();
        m_nextStep.stop();
        m_speed = speed;
        if (wasRewinding)
            seekPipeline(here, speed > 0 ? speed : 1.0, false);
    }
    roll();
}

void Film::seek(std::uint32_t milliseconds) {
    if (!isRolling(m_state) || !m_progress.seekable)
        return;
    if (m_rewinding)
        m_rewinding = Rewinding{milliseconds, m_timers.now()};
    m_progress.soughtTo = milliseconds;
    seekPipeline(milliseconds, m_progress.rate, true);
}

std::uint32_t Film::position() const {
    if (!isRolling(m_state))
        return m_lastPosition;
    if (m_rewinding)
        return rewoundTo();
    if (m_progress.seeking)
        return m_progress.nextSeek.value_or(m_progress.seekTarget);
    auto here = m_pipeline.position().value_or(m_lastPosition);
    if (m_duration != 0)
        here = std::min(here, m_duration);
    // What has run out of data says that it is at the medium's end before the pipeline says that it has
    // ended.
    if (here + tolerance(m_duration) >= m_duration && isTooEarlyToEnd())
        return m_lastPosition;
    m_lastPosition = here;
    m_lastLook = m_timers.now();
    return m_lastPosition;
}

bool Film::isTooEarlyToEnd() const {
    const auto reached = m_lastPosition + static_cast<double>(m_timers.now() - m_lastLook);
    return m_progress.rate == 1.0 && m_duration > 0 && reached + tolerance(m_duration) < m_duration;
}

double Film::pace() const {
    const bool moves = m_rewinding || (m_progress.state == GST_STATE_PLAYING &&
                                       m_state == MediaState::Playing && !m_progress.seeking);
    return moves ? m_speed : 0.0;
}

void Film::present(const std::vector<std::int16_t>& pids) {
    std::vector<std::string> ids;
    for (const auto type : {ComponentType::Video, ComponentType::Audio, ComponentType::Subtitle}) {
        bool shown = false;
        for (const auto& component : m_streams.components()) {
            if (component.type != type || std::find(pids.begin(), pids.end(), component.pid) == pids.end())
                continue;
            shown = true;
            ids.push_back(m_streams.streamId(component));
        }
        if (type == ComponentType::Video)
            m_pipeline.setPictureShown(shown);
        else if (type == ComponentType::Audio)
            m_pipeline.setMuted(!shown);
        else
            m_showsSubtitles = shown;
        if (shown)
            continue;
        // What is not presented at all goes on unseen, unheard and unread, on whichever stream it was.
        for (const auto& component : m_streams.components()) {
            const auto id = m_streams.streamId(component);
            if (component.type == type && std::find(m_progress.selected.begin(), m_progress.selected.end(),
                                                    id) != m_progress.selected.end())
                ids.push_back(id);
        }
    }
    std::sort(ids.begin(), ids.end());
    if (ids.empty() || ids == m_progress.selected)
        return;
    m_progress.selected = ids;
    m_pipeline.selectStreams(std::move(ids));
    // What has been fetched of a stream in segments, up to half a minute, would be heard first.
    if (isRolling(m_state) && m_progress.seekable && m_pipeline.isAdaptive()) {
        m_progress.soughtTo = position();
        seekPipeline(*m_progress.soughtTo, m_progress.rate, false);
    }
}

std::uint32_t Film::rewoundTo() const {
    const auto back = static_cast<double>(m_timers.now() - m_rewinding->since) * -m_speed;
    return static_cast<std::uint32_t>(std::max(0.0, m_rewinding->from - back));
}

void Film::handle(GstMessage* message) {
    if (isOver(m_state))
        return;
    switch (GST_MESSAGE_TYPE(message)) {
        case GST_MESSAGE_ERROR: {
            const auto error = mediaErrorOf(message, m_url);
            const bool elsewhere = m_progress.seeking && error != MediaError::CannotConnect;
            if (!m_progress.missingPlugin.empty())
                fail(MediaError::UnsupportedFormat, "GStreamer has no " + m_progress.missingPlugin);
            else
                fail(elsewhere ? MediaError::PositionNotAvailable : error, reasonOf(message));
            return;
        }
        case GST_MESSAGE_EOS:
            reachedEnd();
            return;
        case GST_MESSAGE_ASYNC_DONE:
            if (m_pipeline.isSource(message))
                prerolled();
            return;
        case GST_MESSAGE_STATE_CHANGED:
            if (m_pipeline.isSource(message))
                stateChanged(message);
            return;
        case GST_MESSAGE_BUFFERING: {
            int percent = 100;
            gst_message_parse_buffering(message, &percent);
            buffered(percent);
            return;
        }
        case GST_MESSAGE_STREAM_COLLECTION:
        case GST_MESSAGE_STREAMS_SELECTED:
            streamsChanged(message);
            return;
        case GST_MESSAGE_DURATION_CHANGED:
            if (m_progress.prerolled)
                m_duration = m_pipeline.duration().value_or(m_duration);
            return;
        case GST_MESSAGE_CLOCK_LOST:
            m_pipeline.setState(GST_STATE_PAUSED);
            roll();
            return;
        case GST_MESSAGE_LATENCY:
            m_pipeline.recalculateLatency();
            return;
        case GST_MESSAGE_ELEMENT:
            handleElement(message);
            return;
        case GST_MESSAGE_APPLICATION:
            handleApplication(message);
            return;
        default:
            return;
    }
}

void Film::handleElement(GstMessage* message) {
    if (gst_message_has_name(message, "http-headers"))
        m_progress.onlyFromStart = refusesRanges(message);
    if (!gst_is_missing_plugin_message(message))
        return;
    m_progress.missingPlugin = Host::GChars(gst_missing_plugin_message_get_description(message)).get();
    GstCaps* rawCaps = nullptr;
    if (!gst_structure_get(gst_message_get_structure(message), "detail", GST_TYPE_CAPS, &rawCaps, nullptr))
        return;
    const GstCapsHandle caps(rawCaps);
    const std::string name = gst_structure_get_name(gst_caps_get_structure(caps.get(), 0));
    // A medium of which only a part can be seen or heard is one that does not play.
    if (name.starts_with("video/") || name.starts_with("audio/"))
        fail(MediaError::UnsupportedFormat, "GStreamer has no " + m_progress.missingPlugin);
}

void Film::handleApplication(GstMessage* message) {
    if (gst_message_has_name(message, PipelineSays::StateChangeFailed)) {
        // An error that says why has usually come before, and then this pipeline is gone.
        fail(MediaError::Unidentified, "GStreamer does not start");
    } else if (gst_message_has_name(message, PipelineSays::IsLive)) {
        m_progress.live = true;
        prerolled();
    } else if (gst_message_has_name(message, PipelineSays::SeekFailed)) {
        seekFailed();
    } else if (gst_message_has_name(message, PipelineSays::List)) {
        GBytes* text = nullptr;
        gst_structure_get(gst_message_get_structure(message), "text", G_TYPE_BYTES, &text, nullptr);
        const Host::GBytesHandle list(text);
        gsize size = 0;
        const auto* bytes = static_cast<const char*>(g_bytes_get_data(list.get(), &size));
        m_streams.offer(soundsOfferedBy({bytes, size}));
    }
}

void Film::stateChanged(GstMessage* message) {
    GstState pending = GST_STATE_VOID_PENDING;
    gst_message_parse_state_changed(message, nullptr, &m_progress.state, &pending);
    if (!m_progress.prerolled)
        return;
    if (m_progress.state == GST_STATE_PLAYING && m_speed > 0.0 && !isBuffering())
        settle(MediaState::Playing);
    if (m_progress.state == GST_STATE_PAUSED && pending == GST_STATE_VOID_PENDING && m_speed == 0.0)
        settle(MediaState::Paused);
}

void Film::streamsChanged(GstMessage* message) {
    GstStreamCollection* rawCollection = nullptr;
    if (GST_MESSAGE_TYPE(message) == GST_MESSAGE_STREAM_COLLECTION)
        gst_message_parse_stream_collection(message, &rawCollection);
    if (rawCollection != nullptr) {
        m_streams.update(GstObjectHandle<GstStreamCollection>(rawCollection));
        if (m_progress.prerolled)
            m_listener.mediaComponentsChanged();
        return;
    }
    if (GST_MESSAGE_TYPE(message) != GST_MESSAGE_STREAMS_SELECTED)
        return;
    m_progress.selected.clear();
    for (guint i = 0; i < gst_message_streams_selected_get_size(message); ++i) {
        const GstObjectHandle<GstStream> stream(gst_message_streams_selected_get_stream(message, i));
        m_progress.selected.emplace_back(gst_stream_get_stream_id(stream.get()));
    }
    std::sort(m_progress.selected.begin(), m_progress.selected.end());
}

void Film::prerolled() {
    if (m_progress.prerolled) {
        seekDone();
        return;
    }
    // A page of text, such as a server's excuse, is no medium, though GStreamer shows it as a subtitle.
    if (!m_progress.live && !m_streams.has(ComponentType::Video) && !m_streams.has(ComponentType::Audio)) {
        fail(MediaError::Corrupt, "it has neither pictures nor sound");
        return;
    }
    m_duration = m_pipeline.duration().value_or(0);
    // A demuxer that is still being joined to its decoders may know the length, and nobody asks it.
    if (m_duration == 0 && !m_progress.live && m_progress.looks < kMostLooks) {
        ++m_progress.looks;
        m_nextGlance.start(kLookMs, [this] { prerolled(); });
        return;
    }
    m_progress.prerolled = true;
    m_limit.stop();
    m_progress.seekable = m_pipeline.isSeekable() && (!m_progress.onlyFromStart || m_pipeline.isAdaptive());
    if (m_speed != 0.0 && !m_progress.seekable)
        m_speed = 1.0;
    m_lastLook = m_timers.now();
    m_listener.mediaComponentsChanged();
}

void Film::begin() {
    if (!m_progress.prerolled || isOver(m_state))
        return;
    roll();
    glance();
}

void Film::buffered(int percent) {
    m_progress.buffered = percent;
    if (!m_progress.prerolled || m_progress.live || m_speed <= 0.0)
        return;
    const bool waiting = m_state == MediaState::Buffering;
    if (isBuffering() && !waiting) {
        m_pipeline.setState(GST_STATE_PAUSED);
        waitForData();
    } else if (isBuffering() && percent > m_progress.bestBuffered) {
        waitForData();
    } else if (!isBuffering() && waiting) {
        m_limit.stop();
        roll();
    }
}

void Film::reachedEnd() {
    // At its end a pipeline says that all of the medium has been played, even if some of it never came.
    if (isTooEarlyToEnd()) {
        fail(MediaError::Corrupt, "it ends too early");
        return;
    }
    // A demuxer of segments now and then comes to the end behind a seek without having given a picture.
    if (m_progress.soughtTo && m_streams.has(ComponentType::Video) && !m_pipeline.hasGivenPictures()) {
        const auto place = *std::exchange(m_progress.soughtTo, std::nullopt);
        seekPipeline(place, m_progress.rate, false);
        return;
    }
    if (m_duration != 0)
        m_lastPosition = m_duration;
    end(MediaState::Finished, NoError);
}

void Film::roll() {
    // Neither a pause nor a step back waits for anything.
    if (m_speed <= 0.0)
        m_limit.stop();
    if (m_speed < 0.0) {
        m_pipeline.setState(GST_STATE_PAUSED);
        if (!m_rewinding)
            m_rewinding = Rewinding{position(), m_timers.now()};
        m_nextStep.start(kStepMs, [this] { step(); });
        settle(MediaState::Playing);
        return;
    }
    if (m_speed == 0.0) {
        m_pipeline.setState(GST_STATE_PAUSED);
        if (m_progress.state == GST_STATE_PAUSED)
            settle(MediaState::Paused);
        return;
    }
    if (m_speed != m_progress.rate)
        seekPipeline(position(), m_speed, false);
    if (isBuffering()) {
        waitForData();
        return;
    }
    m_pipeline.setState(GST_STATE_PLAYING);
    if (m_progress.state == GST_STATE_PLAYING && !m_progress.seeking)
        settle(MediaState::Playing);
}

// A server that sends nothing more must not keep a page waiting for ever.
void Film::waitForData() {
    m_progress.bestBuffered = m_progress.buffered;
    m_limit.start(m_limitMs,
                  [this] { fail(MediaError::CannotConnect, "no more of it came" + withinLimit()); });
    changeState(MediaState::Buffering, NoError);
}

void Film::seekPipeline(std::uint32_t milliseconds, double rate, bool announce) {
    if (m_duration != 0)
        milliseconds = std::min(milliseconds, m_duration - std::min(m_duration, kNearestToEndMs));
    if (!m_progress.seeking)
        m_progress.rateBefore = m_progress.rate;
    m_progress.rate = rate;
    m_progress.announceSeek = m_progress.announceSeek || announce;
    if (m_progress.seeking) {
        m_progress.nextSeek = milliseconds;
        return;
    }
    m_progress.seeking = true;
    m_progress.seekTarget = milliseconds;
    m_lastPosition = milliseconds;
    const bool exact = rate <= kFastestWithSound && !m_rewinding;
    const auto mode = exact ? Pipeline::Seek::Exact : Pipeline::Seek::KeyFrames;
    m_progress.seekChecked = exact;
    m_pipeline.seek(rate, milliseconds, mode);
    // A demuxer of transport streams now and then loses one that soon follows another, and stands still.
    m_seekLimit.start(m_limitMs / kPatienceShare, [this, rate, milliseconds, mode] {
        m_progress.seekChecked = false;
        m_pipeline.seek(rate, milliseconds, mode);
        m_seekLimit.start(m_limitMs, [this] {
            fail(MediaError::PositionNotAvailable,
                 "nothing came from the place that was sought" + withinLimit());
        });
    });
}

void Film::seekDone() {
    if (!m_progress.seeking)
        return;
    // A pipeline that was still on its way to another state says that it has come there in the same words.
    const auto here = m_pipeline.position();
    if (m_progress.seekChecked && here &&
        (*here + kSeekTolerance < m_progress.seekTarget || *here > m_progress.seekTarget + kLatestLookMs))
        return;
    m_progress.seeking = false;
    m_seekLimit.stop();
    m_lastLook = m_timers.now();
    if (m_progress.nextSeek) {
        const auto next = *m_progress.nextSeek;
        m_progress.nextSeek.reset();
        seekPipeline(next, m_progress.rate, false);
        return;
    }
    if (m_progress.announceSeek) {
        m_progress.announceSeek = false;
        m_listener.mediaPositionChanged(m_progress.seekTarget);
    }
}

// Some servers turn out only now to be unable to send from the middle. The medium plays on where it was.
void Film::seekFailed() {
    m_progress.seeking = false;
    m_seekLimit.stop();
    m_progress.nextSeek.reset();
    m_progress.seekable = false;
    m_progress.rate = m_progress.rateBefore;
    m_rewinding.reset();
    m_nextStep.stop();
    m_lastPosition = m_pipeline.position().value_or(m_lastPosition);
    if (m_speed != 0.0)
        m_speed = m_progress.rate;
    if (m_progress.announceSeek) {
        m_progress.announceSeek = false;
        m_listener.mediaPositionChanged(position());
    }
    roll();
}

void Film::step() {
    const auto here = rewoundTo();
    if (here == 0) {
        // Rewound to the start: it plays on from there.
        m_rewinding.reset();
        m_speed = 1.0;
        seekPipeline(0, 1.0, false);
        roll();
        return;
    }
    if (!m_progress.seeking)
        seekPipeline(here, 1.0, false);
    m_nextStep.start(kStepMs, [this] { step(); });
}

// Keeps an eye on how far it has come, for the end. A pipeline that has played all now and then does not say
// so.
void Film::glance() {
    const auto before = m_lastPosition;
    const auto here = position();
    const bool stands =
        here == before && pace() > 0.0 && m_duration != 0 && here + tolerance(m_duration) >= m_duration;
    m_stillGlances = stands ? m_stillGlances + 1 : 0;
    if (m_stillGlances >= kMostStillGlances) {
        reachedEnd();
        return;
    }
    m_nextGlance.start(kGlanceMs, [this] { glance(); });
}

void Film::settle(MediaState state) {
    changeState(state, NoError);
    if (m_progress.announcedSpeed == m_speed)
        return;
    m_progress.announcedSpeed = m_speed;
    m_listener.mediaSpeedChanged(m_speed);
}

void Film::fail(std::int32_t error, const std::string& reason) {
    if (!isOver(m_state))
        g_printerr("hbbtv-media: cannot play %.300s: %s\n", m_url.c_str(), reason.c_str());
    end(MediaState::Error, error);
}

std::string Film::withinLimit() const {
    return " within " + std::to_string(m_limitMs) + " ms";
}

// The process ends soon; nothing that the pipeline says in between matters.
void Film::end(MediaState state, std::int32_t error) {
    for (auto* timer : {&m_limit, &m_seekLimit, &m_nextStep, &m_nextGlance})
        timer->stop();
    changeState(state, error);
}

void Film::changeState(MediaState state, std::int32_t error) {
    if (m_state == state)
        return;
    m_state = state;
    m_listener.mediaStateChanged(state, error);
}

}  // namespace Media
