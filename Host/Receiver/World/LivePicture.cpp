#include "Host/Receiver/World/LivePicture.h"

#include <array>
#include <filesystem>
#include <utility>

#include <glib.h>

#include "Host/Inc/GHandles.h"
#include "Host/Receiver/World/Components.h"
#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

// A busy machine takes its time for a timer, and for the way to the film's process.
constexpr std::uint32_t kHeadStartMs = 300;
constexpr std::uint32_t kLookMs = 1000;

// In the order of the errors.
constexpr std::array kReasons = {"it has an unknown format",  "it cannot be reached", "its process has ended",
                                 "no process can be started", "it is broken",         "it is not there",
                                 "its beginning is not there"};

}  // namespace

void LivePicture::show(const Channel* channel, std::int32_t volume) {
    const auto address = channel == nullptr ? std::string() : addressOf(*channel);
    complainOnce(channel != nullptr && address.empty() ? channel->picture : std::string());
    if (m_player == nullptr && !address.empty())
        m_player = m_make(*this, m_frames);
    if (m_player != nullptr)
        m_player->setVolume(volume);
    if (std::exchange(m_address, address) == address)
        return;
    m_failed = false;
    m_next.stop();
    m_player->load(address);
    if (!address.empty() && m_player->givesFrames())
        (void)m_player->play(1.0);
    m_changed();
}

PlanePicture LivePicture::pictureOf(const Channel& channel) const {
    const auto address = addressOf(channel);
    if (address.empty())
        return PlanePicture::Card;
    if (address != m_address)
        return PlanePicture::None;
    if (m_failed || !m_player->givesFrames() || areOnlySound(m_player->components()))
        return PlanePicture::Card;
    return m_frames.hasFrame() ? PlanePicture::Frames : PlanePicture::None;
}

void LivePicture::mediaStateChanged(MediaState state, std::int32_t error) {
    switch (state) {
        case MediaState::Playing:
            if (!m_next.isRunning())
                m_next.start(kLookMs, [this] { goRound(); });
            break;
        case MediaState::Finished:
            // Not now: the player is in the middle of telling this. Nor at once after a picture that stands
            // still.
            m_next.start(m_player->duration() > kLookMs ? 0 : kLookMs, [this] { (void)m_player->play(1.0); });
            break;
        case MediaState::Error:
            m_next.stop();
            m_failed = true;
            g_warning("the picture %s is not shown: %s", m_address.c_str(),
                      kReasons.at(static_cast<std::size_t>(error)));
            break;
        default:
            break;
    }
    m_changed();
}

void LivePicture::goRound() {
    const auto duration = m_player->duration();
    const auto left = duration - std::min(duration, m_player->position());
    if (duration != 0 && left <= kHeadStartMs)
        (void)m_player->seek(0);
    m_next.start(left > kHeadStartMs ? left - kHeadStartMs : kLookMs, [this] { goRound(); });
}

std::string LivePicture::addressOf(const Channel& channel) const {
    if (channel.picture.empty() || !schemeOf(channel.picture).empty())
        return channel.picture;
    for (const auto& folder : m_folders) {
        if (folder.empty())
            continue;
        std::error_code error;
        const auto path = std::filesystem::absolute(std::filesystem::path(folder) / channel.picture, error);
        if (std::filesystem::is_regular_file(path, error))
            return Host::GChars(g_filename_to_uri(path.c_str(), nullptr, nullptr)).get();
    }
    return "";
}

void LivePicture::complainOnce(const std::string& picture) {
    if (std::exchange(m_missing, picture) != picture && !picture.empty())
        g_info("there is no picture %s: a card is shown", picture.c_str());
}

}  // namespace Receiver
