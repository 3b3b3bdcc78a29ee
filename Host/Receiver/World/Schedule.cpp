#include "Host/Receiver/World/Schedule.h"

#include <algorithm>

namespace Receiver {

namespace {

constexpr std::uint8_t kShortEventTag = 0x4D;
constexpr std::uint8_t kParentalRatingTag = 0x55;
constexpr std::uint8_t kExtensionTag = 0x7F;

// Three characters as a descriptor carries a language or country; padded where the scenario gives fewer.
void appendCode(std::vector<std::uint8_t>& bytes, std::string code) {
    code.resize(3, ' ');
    bytes.insert(bytes.end(), code.begin(), code.end());
}

// The text with its length before it, shortened to the room that is left.
void appendText(std::vector<std::uint8_t>& bytes, const std::string& text, std::size_t room) {
    // 0x15 announces UTF-8; an empty text needs no announcement.
    const std::string coded = text.empty() ? text : "\x15" + text;
    auto length = std::min(coded.size(), room);
    // Not in the middle of a character.
    while (length < coded.size() && length > 0 && (static_cast<std::uint8_t>(coded[length]) & 0xC0) == 0x80)
        --length;
    bytes.push_back(static_cast<std::uint8_t>(length));
    bytes.insert(bytes.end(), coded.begin(), coded.begin() + static_cast<std::ptrdiff_t>(length));
}

std::vector<std::uint8_t> shortEvent(const Programme& programme, const std::string& language) {
    std::vector<std::uint8_t> bytes = {kShortEventTag, 0};
    appendCode(bytes, language);
    appendText(bytes, programme.name, 120);
    appendText(bytes, programme.description, 120);
    bytes[1] = static_cast<std::uint8_t>(bytes.size() - 2);
    return bytes;
}

std::vector<std::uint8_t> parentalRating(const Programme& programme, const std::string& country) {
    std::vector<std::uint8_t> bytes = {kParentalRatingTag, 4};
    appendCode(bytes, country);
    // The descriptor counts from the age of three.
    bytes.push_back(static_cast<std::uint8_t>(programme.rating > 3 ? programme.rating - 3 : 0));
    return bytes;
}

}  // namespace

std::int64_t roundAt(const Channel& channel, std::int64_t origin, std::int64_t now) {
    if (channel.programmes.empty())
        return 0;
    const auto elapsed = now - (origin + std::int64_t{channel.programmes.front().startMinutes} * 60);
    return elapsed >= 0 ? elapsed / channel.scheduleSeconds : 0;
}

ScheduledProgramme showing(const Channel& channel, const Programme& programme, std::int64_t origin,
                           std::int64_t round) {
    const auto start = origin + std::int64_t{programme.startMinutes} * 60 + round * channel.scheduleSeconds;
    return {&programme, start};
}

std::int64_t endOf(const ScheduledProgramme& scheduled) {
    return scheduled.start + std::int64_t{scheduled.programme->durationMinutes} * 60;
}

std::vector<ScheduledProgramme> upcoming(const Channel& channel, std::int64_t origin, std::int64_t now) {
    std::vector<ScheduledProgramme> result;
    auto round = roundAt(channel, origin, now);
    for (const auto lastRound = round + 1; round <= lastRound; ++round) {
        for (const auto& programme : channel.programmes) {
            const auto scheduled = showing(channel, programme, origin, round);
            if (endOf(scheduled) > now && (round < lastRound || result.size() < 2))
                result.push_back(scheduled);
        }
    }
    return result;
}

const Programme* present(const Channel& channel, std::int64_t origin, std::int64_t now) {
    const auto programmes = upcoming(channel, origin, now);
    if (programmes.empty() || programmes.front().start > now)
        return nullptr;
    return programmes.front().programme;
}

std::vector<std::vector<std::uint8_t>> descriptors(const Channel& channel, std::uint16_t eventId,
                                                   const DescriptorFilter& filter,
                                                   const std::string& language, const std::string& country) {
    const auto event = std::ranges::find(channel.programmes, eventId, &Programme::eventId);
    if (event == channel.programmes.end())
        return {};
    std::vector<Descriptor> all = {{shortEvent(*event, language), std::nullopt}};
    if (event->rating > 0)
        all.push_back({parentalRating(*event, country), std::nullopt});
    all.insert(all.end(), event->descriptors.begin(), event->descriptors.end());

    std::vector<std::vector<std::uint8_t>> found;
    for (const auto& descriptor : all) {
        const auto& bytes = descriptor.bytes;
        const bool extended = bytes[0] == kExtensionTag && bytes.size() > 2;
        const bool tagFits = filter.tag < 0 || bytes[0] == filter.tag;
        const bool extensionFits = filter.extendedTag < 0 || !extended || bytes[2] == filter.extendedTag;
        const bool specifierFits =
            filter.privateDataSpecifier < 0 || !descriptor.privateDataSpecifier ||
            *descriptor.privateDataSpecifier == std::uint32_t(filter.privateDataSpecifier);
        if (tagFits && extensionFits && specifierFits)
            found.push_back(bytes);
    }
    return found;
}

}  // namespace Receiver
