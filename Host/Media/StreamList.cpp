#include "Host/Media/StreamList.h"

#include <algorithm>
#include <map>
#include <optional>

#include <gst/tag/tag.h>

namespace Media {

using Receiver::ComponentType;

namespace {

struct Encoding {
    const char* caps;
    const char* name;
};

// The names that television uses for them; others keep GStreamer's.
constexpr Encoding kEncodings[] = {
    {"video/x-h264", "H264"},
    {"video/x-h265", "HEVC"},
    {"video/mpeg, mpegversion=(int)[1, 2]", "MPEG2"},
    {"audio/mpeg, mpegversion=(int)1, layer=(int)3", "MPEG1_L3"},
    {"audio/mpeg, mpegversion=(int)1", "MPEG1_L2"},
    {"audio/mpeg, mpegversion=(int)[2, 4]", "HEAAC"},
    {"audio/x-ac3", "AC3"},
    {"audio/x-eac3", "E-AC3"},
    {"application/ttml+xml", "EBU-TT-D"},
    {"subpicture/x-dvb", "DVB-SUBT"},
};

std::string encodingOf(const GstCaps& caps) {
    for (const auto& encoding : kEncodings) {
        const GstCapsHandle known(gst_caps_from_string(encoding.caps));
        if (gst_caps_can_intersect(&caps, known.get()))
            return encoding.name;
    }
    return gst_structure_get_name(gst_caps_get_structure(&caps, 0));
}

std::optional<ComponentType> typeOf(GstStream* stream) {
    const auto type = gst_stream_get_stream_type(stream);
    if ((type & GST_STREAM_TYPE_VIDEO) != 0)
        return ComponentType::Video;
    if ((type & GST_STREAM_TYPE_AUDIO) != 0)
        return ComponentType::Audio;
    if ((type & GST_STREAM_TYPE_TEXT) != 0)
        return ComponentType::Subtitle;
    return std::nullopt;
}

// Three letters, as pages and broadcasts write it; "en-GB" is English.
std::string threeLetters(const std::string& code) {
    constexpr std::size_t longest = 3;
    const auto primary = code.substr(0, code.find('-'));
    const char* known = gst_tag_get_language_code_iso_639_2T(primary.c_str());
    const std::string language = known == nullptr ? primary : known;
    return language == "und" || language.size() > longest ? std::string() : language;
}

std::string languageOf(GstStream* stream) {
    const GstTagListHandle tags(gst_stream_get_tags(stream));
    // What has a region is a name to GStreamer, and no code.
    for (const auto* tag : {GST_TAG_LANGUAGE_CODE, GST_TAG_LANGUAGE_NAME}) {
        char* code = nullptr;
        if (tags != nullptr && gst_tag_list_get_string(tags.get(), tag, &code))
            return threeLetters(Host::GChars(code).get());
    }
    return {};
}

// 5.1 is five main channels, and so on: the one for low frequencies does not count.
int mainChannels(int channels) {
    constexpr int fewestWithBass = 6;
    return channels >= fewestWithBass ? channels - 1 : channels;
}

// Aspect ratio in hundredths, or number of main channels.
std::int32_t extraOf(ComponentType type, const GstStructure& format) {
    int channels = 0;
    if (type == ComponentType::Audio && gst_structure_get_int(&format, "channels", &channels))
        return mainChannels(channels);
    int width = 0;
    int height = 0;
    if (type != ComponentType::Video || !gst_structure_get_int(&format, "width", &width) ||
        !gst_structure_get_int(&format, "height", &height) || width <= 0 || height <= 0)
        return 0;
    int pixelWidth = 1;
    int pixelHeight = 1;
    if (!gst_structure_get_fraction(&format, "pixel-aspect-ratio", &pixelWidth, &pixelHeight) ||
        pixelWidth <= 0 || pixelHeight <= 0)
        pixelWidth = pixelHeight = 1;
    const double ratio = static_cast<double>(width) / height * pixelWidth / pixelHeight;
    return static_cast<std::int32_t>(std::clamp(ratio * 100.0 + 0.5, 0.0, 1000.0));
}

Component describe(GstStream* stream, ComponentType type, std::int16_t pid) {
    Component component;
    component.type = type;
    component.pid = pid;
    component.tag = static_cast<std::uint8_t>(pid);
    component.language = languageOf(stream);
    const GstCapsHandle caps(gst_stream_get_caps(stream));
    if (caps != nullptr && !gst_caps_is_any(caps.get()) && !gst_caps_is_empty(caps.get())) {
        component.encoding = encodingOf(*caps);
        component.extra = extraOf(type, *gst_caps_get_structure(caps.get(), 0));
    }
    return component;
}

}  // namespace

void StreamList::update(GstObjectHandle<GstStreamCollection> collection) {
    m_collection = std::move(collection);
    for (guint i = 0; i < gst_stream_collection_get_size(m_collection.get()); ++i) {
        const std::string id =
            gst_stream_get_stream_id(gst_stream_collection_get_stream(m_collection.get(), i));
        if (std::find(m_streamIds.begin(), m_streamIds.end(), id) == m_streamIds.end())
            m_streamIds.push_back(id);
    }
}

std::vector<Component> StreamList::components() const {
    std::vector<Component> components;
    std::map<std::string, int> places;
    const auto size = m_collection == nullptr ? 0 : gst_stream_collection_get_size(m_collection.get());
    for (guint i = 0; i < size; ++i) {
        auto* stream = gst_stream_collection_get_stream(m_collection.get(), i);
        const auto type = typeOf(stream);
        const auto known =
            std::find(m_streamIds.begin(), m_streamIds.end(), gst_stream_get_stream_id(stream));
        if (!type)
            continue;
        auto component = describe(stream, *type, static_cast<std::int16_t>(known - m_streamIds.begin() + 1));
        if (*type == ComponentType::Audio) {
            const int place = places[component.language]++;
            if (component.extra == 0)
                component.extra = mainChannels(offeredChannels(component.language, place));
        }
        components.push_back(std::move(component));
    }
    return components;
}

int StreamList::offeredChannels(const std::string& language, int place) const {
    for (const auto& sound : m_offered) {
        if (threeLetters(sound.language) == language && place-- == 0)
            return sound.channels;
    }
    return 0;
}

bool StreamList::has(ComponentType type) const {
    return std::ranges::any_of(components(), [type](const auto& each) { return each.type == type; });
}

}  // namespace Media
