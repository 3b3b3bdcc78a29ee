#include "Host/Receiver/Media/GStreamerMediaPlayer.h"

#include <algorithm>
#include <cmath>

#include <gst/pbutils/missing-plugins.h>

#include "Host/Receiver/Media/MediaErrors.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

constexpr double fastest = 64.0;
constexpr double slowest = 1.0 / 16;
// Beyond this only key frames are shown, without sound.
constexpr double fastestWithSound = 2.0;
constexpr std::uint32_t stepMs = 200;
constexpr std::uint32_t glanceMs = 500;
// The tracks of a medium do not end together to the millisecond, and a demuxer that is sent behind the end of
// one of them never shows the end of the medium.
constexpr std::uint32_t nearestToEndMs = 100;

bool isSpeed(double speed) {
    const double pace = std::abs(speed);
    return speed == 0.0 || (std::isfinite(speed) && pace >= slowest && pace <= fastest);
}

// GStreamer reads from far more than a page may: devices, descriptors, other programs.
bool isForPages(const std::string& url) {
    const auto scheme = schemeOf(url);
    return scheme.empty() || scheme == "http" || scheme == "https" || scheme == "file";
}

// A medium that ends this much before its end was cut off.
std::uint32_t tolerance(std::uint32_t duration) {
    return 1000 + duration / 20;
}

}  // namespace

GStreamerMediaPlayer::GStreamerMediaPlayer(const Scenario& scenario, Timers& timers, MediaListener& listener,
                                           MediaOutputs outputs)
    : m_scenario(scenario),
      m_timers(timers),
      m_listener(listener),
      m_outputs(std::move(outputs)),
      m_limit(timers),
      m_seekLimit(timers),
      m_nextStep(timers),
      m_nextGlance(timers) {}

GStreamerMediaPlayer::~GStreamerMediaPlayer() = default;

void GStreamerMediaPlayer::load(const std::string& url) {
    stop();
    m_url = url;
}

bool GStreamerMediaPlayer::play(double speed) {
    if (m_url.empty() || !isSpeed(speed))
        return false;
    if (!isRolling()) {
        m_speed = speed;
        if (m_state != MediaState::Connecting)
            connect();
        return true;
    }
    if (speed != 0.0 && speed != 1.0 && !m_progress.seekable)
        return false;
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
    return true;
}

void GStreamerMediaPlayer::stop() {
    dropPipeline();
    m_duration = 0;
    m_lastPosition = 0;
    changeState(MediaState::Stopped, NoError);
}

bool GStreamerMediaPlayer::seek(std::uint32_t milliseconds) {
    if (!isRolling() || !m_progress.seekable || (m_duration != 0 && milliseconds > m_duration))
        return false;
    if (m_rewinding)
        m_rewinding = Rewinding{milliseconds, m_timers.now()};
    seekPipeline(milliseconds, m_progress.rate, true);
    return true;
}

std::uint32_t GStreamerMediaPlayer::position() const {
    if (!isRolling())
        return m_lastPosition;
    if (m_rewinding)
        return rewoundTo();
    if (m_progress.seeking)
        return m_progress.nextSeek.value_or(m_progress.seekTarget);
    m_lastPosition = m_pipeline->position().value_or(m_lastPosition);
    if (m_duration != 0)
        m_lastPosition = std::min(m_lastPosition, m_duration);
    m_lastLook = m_timers.now();
    return m_lastPosition;
}

std::vector<Component> GStreamerMediaPlayer::components() const {
    return m_progress.prerolled ? m_streams.components() : std::vector<Component>();
}

void GStreamerMediaPlayer::present(const std::vector<Component>& active) {
    if (m_pipeline == nullptr)
        return;
    const auto shown = [&active](ComponentType type) {
        return std::any_of(active.begin(), active.end(),
                           [type](const Component& component) { return component.type == type; });
    };
    m_pipeline->setPictureShown(shown(ComponentType::Video));
    m_pipeline->setMuted(!shown(ComponentType::Audio));
    // What is not presented at all goes on unseen and unheard, on whichever stream it was.
    auto wanted = active;
    for (const auto type : {ComponentType::Video, ComponentType::Audio}) {
        if (shown(type))
            continue;
        for (const auto& component : m_streams.components()) {
            const auto ids = m_streams.streamIds({component});
            if (component.type == type && std::find(m_progress.selected.begin(), m_progress.selected.end(),
                                                    ids.front()) != m_progress.selected.end())
                wanted.push_back(component);
        }
    }
    std::erase_if(wanted,
                  [](const Component& component) { return component.type == ComponentType::Subtitle; });
    auto ids = m_streams.streamIds(wanted);
    std::sort(ids.begin(), ids.end());
    if (ids.empty() || ids == m_progress.selected)
        return;
    m_progress.selected = ids;
    m_pipeline->selectStreams(std::move(ids));
}

void GStreamerMediaPlayer::setVolume(std::int32_t volume) {
    m_volume = volume;
    if (m_pipeline != nullptr)
        m_pipeline->setVolume(volume / 100.0);
}

std::uint32_t GStreamerMediaPlayer::rewoundTo() const {
    const auto back = static_cast<double>(m_timers.now() - m_rewinding->since) * -m_speed;
    return static_cast<std::uint32_t>(std::max(0.0, m_rewinding->from - back));
}

void GStreamerMediaPlayer::connect() {
    dropPipeline();
    m_duration = 0;
    m_lastPosition = 0;
    if (!isForPages(m_url)) {
        m_limit.start(0, [this] { fail(MediaError::UnsupportedFormat); });
        changeState(MediaState::Connecting, NoError);
        return;
    }
    m_pipeline = std::make_unique<Pipeline>(
        m_url, m_outputs.picture == nullptr ? nullptr : std::make_shared<PictureGate>(m_outputs.picture),
        m_outputs.sound, [this](GstMessage* message) { handle(message); });
    m_pipeline->setVolume(m_volume / 100.0);
    m_pipeline->setState(GST_STATE_PAUSED);
    m_limit.start(m_scenario.media.connectLimitMs,
                  [this] { fail(isRemote(m_url) ? MediaError::CannotConnect : MediaError::Corrupt); });
    changeState(MediaState::Connecting, NoError);
}

void GStreamerMediaPlayer::dropPipeline() {
    m_limit.stop();
    m_seekLimit.stop();
    m_nextStep.stop();
    m_nextGlance.stop();
    m_rewinding.reset();
    m_pipeline.reset();
    m_progress = {};
    m_streams = {};
}

void GStreamerMediaPlayer::handle(GstMessage* message) {
    if (message == nullptr) {
        fail(MediaError::InsufficientResources);
        return;
    }
    switch (GST_MESSAGE_TYPE(message)) {
        case GST_MESSAGE_ERROR: {
            const auto error = mediaErrorOf(message, m_url);
            const bool elsewhere = m_progress.seeking && error != MediaError::CannotConnect;
            fail(m_progress.missingPlugin ? MediaError::UnsupportedFormat
                 : elsewhere              ? MediaError::PositionNotAvailable
                                          : error);
            return;
        }
        case GST_MESSAGE_EOS:
            reachedEnd();
            return;
        case GST_MESSAGE_ASYNC_DONE:
            if (m_pipeline->isSource(message))
                prerolled();
            return;
        case GST_MESSAGE_STATE_CHANGED:
            if (m_pipeline->isSource(message))
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
                m_duration = m_pipeline->duration().value_or(m_duration);
            return;
        case GST_MESSAGE_CLOCK_LOST:
            m_pipeline->setState(GST_STATE_PAUSED);
            roll();
            return;
        case GST_MESSAGE_LATENCY:
            m_pipeline->recalculateLatency();
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

void GStreamerMediaPlayer::handleElement(GstMessage* message) {
    if (gst_message_has_name(message, "http-headers"))
        m_progress.onlyFromStart = refusesRanges(message);
    if (!gst_is_missing_plugin_message(message))
        return;
    m_progress.missingPlugin = true;
    GstCaps* rawCaps = nullptr;
    if (!gst_structure_get(gst_message_get_structure(message), "detail", GST_TYPE_CAPS, &rawCaps, nullptr))
        return;
    const GstCapsHandle caps(rawCaps);
    const std::string name = gst_structure_get_name(gst_caps_get_structure(caps.get(), 0));
    // A medium of which only a part can be seen or heard is one that does not play.
    if (name.starts_with("video/") || name.starts_with("audio/"))
        fail(MediaError::UnsupportedFormat);
}

void GStreamerMediaPlayer::handleApplication(GstMessage* message) {
    if (gst_message_has_name(message, PipelineSays::StateChangeFailed)) {
        // An error that says why has usually come before, and then this pipeline is gone.
        fail(MediaError::Unidentified);
    } else if (gst_message_has_name(message, PipelineSays::IsLive)) {
        m_progress.live = true;
        prerolled();
    } else if (gst_message_has_name(message, PipelineSays::SeekFailed)) {
        seekFailed();
    }
}

void GStreamerMediaPlayer::stateChanged(GstMessage* message) {
    GstState pending = GST_STATE_VOID_PENDING;
    gst_message_parse_state_changed(message, nullptr, &m_progress.state, &pending);
    if (!m_progress.prerolled)
        return;
    if (m_progress.state == GST_STATE_PLAYING && m_speed > 0.0 && !isBuffering())
        settle(MediaState::Playing);
    if (m_progress.state == GST_STATE_PAUSED && pending == GST_STATE_VOID_PENDING && m_speed == 0.0)
        settle(MediaState::Paused);
}

void GStreamerMediaPlayer::streamsChanged(GstMessage* message) {
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

void GStreamerMediaPlayer::prerolled() {
    if (m_progress.prerolled) {
        seekDone();
        return;
    }
    // A page of text, such as a server's excuse, is no medium, though GStreamer shows it as a subtitle.
    if (!m_progress.live && !m_streams.hasPictureOrSound()) {
        fail(MediaError::Corrupt);
        return;
    }
    m_progress.prerolled = true;
    m_limit.stop();
    m_duration = m_pipeline->duration().value_or(0);
    m_progress.seekable = m_pipeline->isSeekable() && (!m_progress.onlyFromStart || m_pipeline->isAdaptive());
    if (m_speed != 0.0 && !m_progress.seekable)
        m_speed = 1.0;
    m_lastLook = m_timers.now();
    m_listener.mediaComponentsChanged();
    roll();
    glance();
}

void GStreamerMediaPlayer::buffered(int percent) {
    m_progress.buffered = percent;
    if (!m_progress.prerolled || m_progress.live || m_speed <= 0.0)
        return;
    const bool waiting = m_state == MediaState::Buffering;
    if (isBuffering() && !waiting) {
        m_pipeline->setState(GST_STATE_PAUSED);
        waitForData();
    } else if (isBuffering() && percent > m_progress.bestBuffered) {
        waitForData();
    } else if (!isBuffering() && waiting) {
        m_limit.stop();
        roll();
    }
}

void GStreamerMediaPlayer::reachedEnd() {
    // At its end a pipeline says that all of the medium has been played, even if some of it never came.
    const auto reached = m_lastPosition + static_cast<double>(m_timers.now() - m_lastLook);
    if (m_progress.rate == 1.0 && m_duration > 0 && reached + tolerance(m_duration) < m_duration) {
        fail(MediaError::Corrupt);
        return;
    }
    dropPipeline();
    if (m_duration != 0)
        m_lastPosition = m_duration;
    changeState(MediaState::Finished, NoError);
}

void GStreamerMediaPlayer::roll() {
    if (m_speed < 0.0) {
        m_pipeline->setState(GST_STATE_PAUSED);
        if (!m_rewinding)
            m_rewinding = Rewinding{position(), m_timers.now()};
        m_nextStep.start(stepMs, [this] { step(); });
        settle(MediaState::Playing);
        return;
    }
    if (m_speed == 0.0) {
        m_pipeline->setState(GST_STATE_PAUSED);
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
    m_pipeline->setState(GST_STATE_PLAYING);
    if (m_progress.state == GST_STATE_PLAYING && !m_progress.seeking)
        settle(MediaState::Playing);
}

// A server that sends nothing more must not keep a page waiting for ever.
void GStreamerMediaPlayer::waitForData() {
    m_progress.bestBuffered = m_progress.buffered;
    m_limit.start(m_scenario.media.connectLimitMs, [this] { fail(MediaError::CannotConnect); });
    changeState(MediaState::Buffering, NoError);
}

void GStreamerMediaPlayer::seekPipeline(std::uint32_t milliseconds, double rate, bool announce) {
    if (m_duration != 0)
        milliseconds = std::min(milliseconds, m_duration - std::min(m_duration, nearestToEndMs));
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
    m_seekLimit.start(m_scenario.media.connectLimitMs, [this] { fail(MediaError::PositionNotAvailable); });
    const bool exact = rate <= fastestWithSound && !m_rewinding;
    m_pipeline->seek(rate, milliseconds, exact ? Pipeline::Seek::Exact : Pipeline::Seek::KeyFrames);
}

void GStreamerMediaPlayer::seekDone() {
    if (!m_progress.seeking)
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
void GStreamerMediaPlayer::seekFailed() {
    m_progress.seeking = false;
    m_seekLimit.stop();
    m_progress.nextSeek.reset();
    m_progress.seekable = false;
    m_progress.rate = m_progress.rateBefore;
    m_rewinding.reset();
    m_nextStep.stop();
    m_lastPosition = m_pipeline->position().value_or(m_lastPosition);
    if (m_speed != 0.0)
        m_speed = m_progress.rate;
    if (m_progress.announceSeek) {
        m_progress.announceSeek = false;
        m_listener.mediaPositionChanged(position());
    }
    roll();
}

void GStreamerMediaPlayer::step() {
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
    m_nextStep.start(stepMs, [this] { step(); });
}

// Keeps an eye on how far it has come, for the end.
void GStreamerMediaPlayer::glance() {
    (void)position();
    m_nextGlance.start(glanceMs, [this] { glance(); });
}

void GStreamerMediaPlayer::settle(MediaState state) {
    changeState(state, NoError);
    if (m_progress.announcedSpeed == m_speed)
        return;
    m_progress.announcedSpeed = m_speed;
    m_listener.mediaSpeedChanged(m_speed);
}

void GStreamerMediaPlayer::fail(std::int32_t error) {
    dropPipeline();
    changeState(MediaState::Error, error);
}

void GStreamerMediaPlayer::changeState(MediaState state, std::int32_t error) {
    if (m_state == state)
        return;
    m_state = state;
    m_listener.mediaStateChanged(state, error);
}

}  // namespace Receiver
