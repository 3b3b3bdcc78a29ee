#include "Host/Receiver/Media/ChildMediaPlayer.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "Host/Receiver/Media/MediaWords.h"
#include "Host/Receiver/World/ReceiverEvents.h"
#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

constexpr double kFastest = 64.0;
constexpr double kSlowest = 1.0 / 16;
constexpr std::size_t kMostComponents = 64;
// A child tells of its film several times a second.
constexpr std::uint32_t kLongestSilenceMs = 5000;

bool isSpeed(double speed) {
    const double pace = std::abs(speed);
    return speed == 0.0 || (std::isfinite(speed) && pace >= kSlowest && pace <= kFastest);
}

// GStreamer reads from far more than a page may: devices, descriptors, other programs.
bool isForPages(const std::string& url) {
    const auto scheme = schemeOf(url);
    return scheme.empty() || scheme == "http" || scheme == "https" || scheme == "file";
}

}  // namespace

ChildMediaPlayer::ChildMediaPlayer(const Scenario& scenario, Timers& timers, MediaChildren& children,
                                   MediaListener& listener, PictureSink& picture)
    : m_scenario(scenario),
      m_timers(timers),
      m_children(children),
      m_listener(listener),
      m_picture(picture),
      m_silence(timers) {
    m_children.prepare();
}

void ChildMediaPlayer::load(const std::string& url) {
    stop();
    m_url = url;
}

bool ChildMediaPlayer::play(double speed) {
    if (m_url.empty() || !isSpeed(speed) ||
        (isRolling(m_state) && speed != 0.0 && speed != 1.0 && !m_film.seekable))
        return false;
    m_speed = speed;
    if (isRolling(m_state) || m_state == MediaState::Connecting)
        tell(MediaWords::Play, g_variant_new_double(speed));
    else
        connect();
    return true;
}

void ChildMediaPlayer::stop() {
    dropChild();
    m_film = {};
    changeState(MediaState::Stopped, NoError);
}

bool ChildMediaPlayer::seek(std::uint32_t milliseconds) {
    if (!isRolling(m_state) || !m_film.seekable || (m_film.duration != 0 && milliseconds > m_film.duration))
        return false;
    holdAt(milliseconds);
    tell(MediaWords::Seek, g_variant_new_uint32(milliseconds));
    return true;
}

std::uint32_t ChildMediaPlayer::position() const {
    const double moved = static_cast<double>(m_timers.now() - m_film.at) * m_film.pace;
    const double end = m_film.duration != 0 ? m_film.duration : std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::clamp(m_film.position + moved, 0.0, end));
}

void ChildMediaPlayer::holdAt(std::uint32_t position) {
    m_film.position = position;
    m_film.pace = 0.0;
}

void ChildMediaPlayer::present(const std::vector<Component>& active) {
    GVariantBuilder pids;
    g_variant_builder_init(&pids, G_VARIANT_TYPE(MediaWords::Present.type));
    for (const auto& component : active)
        g_variant_builder_add(&pids, "n", component.pid);
    tell(MediaWords::Present, g_variant_builder_end(&pids));
}

void ChildMediaPlayer::setVolume(std::int32_t volume) {
    m_volume = volume;
    tell(MediaWords::Volume, g_variant_new_int32(volume));
}

void ChildMediaPlayer::connect() {
    dropChild();
    m_film = {};
    m_number = 0;
    m_complained = false;
    changeState(MediaState::Connecting, NoError);
    if (m_state != MediaState::Connecting)
        return;
    m_child = isForPages(m_url) ? m_children.take() : nullptr;
    if (m_child == nullptr) {
        const auto error =
            isForPages(m_url) ? MediaError::InsufficientResources : MediaError::UnsupportedFormat;
        m_silence.start(0, [this, error] { fail(error); });
        return;
    }
    // The first time GStreamer may look through all of its plugins.
    m_silence.start(m_scenario.media.connectLimitMs + kLongestSilenceMs, [this] { m_child->kill(); });
    m_child->listen({[this](MediaMessage& message) { hear(message); }, [this] { childEnded(); }});
    tell(MediaWords::Load,
         g_variant_new(MediaWords::Load.type, m_url.c_str(), m_scenario.media.userAgent.c_str(), m_speed,
                       m_scenario.media.connectLimitMs, m_volume));
}

void ChildMediaPlayer::tell(const MediaWord& word, GVariant* content) {
    const Host::GVariantHandle owned(content == nullptr ? nullptr : g_variant_ref_sink(content));
    if (m_child != nullptr)
        m_child->send(word, ++m_number, owned.get());
}

void ChildMediaPlayer::dropChild() {
    m_silence.stop();
    m_components.clear();
    m_picture.clear();
    m_child.reset();
}

void ChildMediaPlayer::fail(std::int32_t error) {
    holdAt(position());
    dropChild();
    changeState(MediaState::Error, error);
}

void ChildMediaPlayer::changeState(MediaState state, std::int32_t error) {
    if (m_state == state)
        return;
    m_state = state;
    m_listener.mediaStateChanged(state, error);
}

void ChildMediaPlayer::childEnded() {
    g_warning("the process that played a film has ended");
    m_child.reset();
    fail(MediaError::Unidentified);
}

// A listener may load another medium: behind a call to it, this child may be gone.
void ChildMediaPlayer::hear(MediaMessage& message) {
    m_silence.start(kLongestSilenceMs, [this] { m_child->kill(); });
    if (message.is(MediaWords::Film)) {
        hearOfFilm(message);
    } else if (message.is(MediaWords::State)) {
        hearOfState(message);
    } else if (message.is(MediaWords::Speed)) {
        const double speed = g_variant_get_double(message.content.get());
        if (isSpeed(speed))
            m_listener.mediaSpeedChanged(speed);
    } else if (message.is(MediaWords::Sought)) {
        m_listener.mediaPositionChanged(g_variant_get_uint32(message.content.get()));
    } else if (message.is(MediaWords::Components)) {
        hearOfComponents(message);
    } else if (message.is(MediaWords::Picture)) {
        if (g_variant_get_boolean(message.content.get()) && message.file)
            m_picture.show(std::move(message.file));
        else
            m_picture.clear();
    } else if (message.is(MediaWords::Subtitle)) {
        m_picture.subtitle(g_variant_get_string(message.content.get(), nullptr));
    } else if (!message.is(MediaWords::Ready) && !std::exchange(m_complained, true)) {
        g_warning("the process that plays a film says what nobody knows: %.40s", message.word.c_str());
    }
}

void ChildMediaPlayer::hearOfFilm(const MediaMessage& message) {
    // It does not know yet what it has been told meanwhile.
    if (message.number < m_number)
        return;
    Film told;
    double speed = 0.0;
    gboolean seekable = FALSE;
    g_variant_get(message.content.get(), MediaWords::Film.type, &told.at, &told.position, &told.duration,
                  &told.pace, &speed, &seekable);
    if (!isSpeed(told.pace) || !isSpeed(speed))
        return;
    told.seekable = seekable != FALSE;
    told.at = std::clamp(told.at, m_timers.now() - kLongestSilenceMs, m_timers.now());
    m_film = told;
    m_speed = speed;
}

void ChildMediaPlayer::hearOfState(const MediaMessage& message) {
    std::int32_t state = 0;
    std::int32_t error = 0;
    g_variant_get(message.content.get(), MediaWords::State.type, &state, &error);
    switch (static_cast<MediaState>(state)) {
        case MediaState::Playing:
        case MediaState::Paused:
        case MediaState::Buffering:
            changeState(static_cast<MediaState>(state), NoError);
            return;
        case MediaState::Finished:
            holdAt(m_film.duration != 0 ? m_film.duration : position());
            dropChild();
            changeState(MediaState::Finished, NoError);
            return;
        case MediaState::Error:
            fail(std::clamp(error, MediaError::UnsupportedFormat, MediaError::PositionNotAvailable));
            return;
        default:
            return;
    }
}

void ChildMediaPlayer::hearOfComponents(const MediaMessage& message) {
    std::vector<Component> components;
    const auto count = std::min(g_variant_n_children(message.content.get()), kMostComponents);
    for (std::size_t i = 0; i < count; ++i) {
        const Host::GVariantHandle each(g_variant_get_child_value(message.content.get(), i));
        Component component;
        std::int32_t type = 0;
        const char* encoding = nullptr;
        const char* language = nullptr;
        g_variant_get(each.get(), "(i&sn&si)", &type, &encoding, &component.pid, &language, &component.extra);
        component.type = static_cast<ComponentType>(std::clamp(type, 0, 2));
        component.tag = static_cast<std::uint8_t>(component.pid);
        component.encoding = encoding;
        component.language = language;
        components.push_back(std::move(component));
    }
    m_components = std::move(components);
    const auto* asker = m_child.get();
    m_listener.mediaComponentsChanged();
    if (m_child.get() == asker)
        tell(MediaWords::Begin);
}

}  // namespace Receiver
