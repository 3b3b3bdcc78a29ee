#include "Host/Media/OfferedSound.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <map>
#include <sstream>
#include <string_view>

#include "Host/Inc/GHandles.h"

namespace Media {

namespace {

constexpr std::string_view kMediaTag = "#EXT-X-MEDIA:";

int number(const std::string& text, unsigned base, int most) {
    guint64 value = 0;
    return g_ascii_string_to_unsigned(text.c_str(), base, 0, static_cast<guint64>(most), &value, nullptr)
               ? static_cast<int>(value)
               : 0;
}

// In MPEG's code points; they are the numbers of channels up to six. The eighth stands for two mono tracks,
// but what is met is 7.1, of writers that count.
int channelsOfCodePoint(int code) {
    constexpr int channels[] = {0, 1, 2, 3, 4, 5, 6, 8, 8, 3, 4, 7, 8, 24, 8, 12, 10, 12, 14, 12, 14};
    return code < static_cast<int>(std::size(channels)) ? channels[code] : 0;
}

// A bit for each loudspeaker, or pair of them.
int channelsOfLoudspeakers(int mask) {
    constexpr int pairs = 0b0000'0110'0111'0100;
    return std::popcount(static_cast<unsigned>(mask)) + std::popcount(static_cast<unsigned>(mask & pairs));
}

int channelsOf(const std::string& scheme, const std::string& value) {
    constexpr int mostChannels = 64;
    if (scheme.find("dolby") != std::string::npos)
        return channelsOfLoudspeakers(number(value, 16, 0xffff));
    const int count = number(value, 10, mostChannels);
    return scheme.find(":dts") != std::string::npos ? count : channelsOfCodePoint(count);
}

// One of the sets of a period offers one track, in several qualities.
struct DashReader {
    void begin(std::string_view element, const std::map<std::string, std::string>& attributes) {
        const auto at = [&attributes](const char* name) {
            const auto found = attributes.find(name);
            return found == attributes.end() ? std::string() : found->second;
        };
        if (element == "AdaptationSet") {
            m_current = {at("lang"), 0};
            m_isAudio = false;
        }
        if (at("contentType") == "audio" || at("mimeType").starts_with("audio/"))
            m_isAudio = true;
        if (element == "AudioChannelConfiguration" && m_current.channels == 0)
            m_current.channels = channelsOf(at("schemeIdUri"), at("value"));
    }
    void end(std::string_view element) {
        // Later periods have the same tracks again.
        m_isComplete = m_isComplete || (element == "Period" && !sounds.empty());
        if (element == "AdaptationSet" && m_isAudio && !m_isComplete)
            sounds.push_back(m_current);
    }

    std::vector<OfferedSound> sounds;

 private:
    OfferedSound m_current;
    bool m_isAudio = false;
    bool m_isComplete = false;
};

std::vector<OfferedSound> ofDash(const std::string& list) {
    DashReader reader;
    GMarkupParser parser{};
    parser.start_element = [](GMarkupParseContext*, const char* element, const char** names,
                              const char** values, gpointer self, GError**) {
        std::map<std::string, std::string> attributes;
        for (; *names != nullptr; ++names, ++values)
            attributes.emplace(*names, *values);
        static_cast<DashReader*>(self)->begin(element, attributes);
    };
    parser.end_element = [](GMarkupParseContext*, const char* element, gpointer self, GError**) {
        static_cast<DashReader*>(self)->end(element);
    };
    auto* context = g_markup_parse_context_new(&parser, G_MARKUP_DEFAULT_FLAGS, &reader, nullptr);
    const bool isWhole = g_markup_parse_context_parse(context, list.data(), static_cast<gssize>(list.size()),
                                                      nullptr) != FALSE;
    g_markup_parse_context_free(context);
    return isWhole ? reader.sounds : std::vector<OfferedSound>();
}

// NAME=value and NAME="value", separated by commas.
std::map<std::string, std::string> attributesOf(std::string_view list) {
    std::map<std::string, std::string> attributes;
    for (auto equals = list.find('='); equals != std::string_view::npos; equals = list.find('=')) {
        const auto name = list.substr(0, equals);
        list.remove_prefix(equals + 1);
        const bool isQuoted = list.starts_with('"');
        list.remove_prefix(isQuoted ? 1 : 0);
        const auto end = std::min(list.find(isQuoted ? '"' : ','), list.size());
        attributes.emplace(name, list.substr(0, end));
        list.remove_prefix(std::min(end + (isQuoted ? 2 : 1), list.size()));
    }
    return attributes;
}

std::vector<OfferedSound> ofHls(const std::string& list) {
    std::vector<OfferedSound> sounds;
    std::string group;
    std::istringstream lines(list);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(kMediaTag))
            continue;
        auto attributes = attributesOf(std::string_view(line).substr(kMediaTag.size()));
        // Without an address it is within the picture's stream, which tells of it. Other groups have the same
        // tracks in other qualities.
        if (attributes["TYPE"] != "AUDIO" || attributes["URI"].empty())
            continue;
        group = group.empty() ? attributes["GROUP-ID"] : group;
        if (attributes["GROUP-ID"] != group)
            continue;
        const auto channels = attributes["CHANNELS"];
        sounds.push_back({attributes["LANGUAGE"], number(channels.substr(0, channels.find('/')), 10, 64)});
    }
    return sounds;
}

}  // namespace

std::vector<OfferedSound> soundsOfferedBy(const std::string& list) {
    return list.find(kMediaTag) != std::string::npos ? ofHls(list) : ofDash(list);
}

}  // namespace Media
