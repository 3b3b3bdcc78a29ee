#include "Host/Media/MediaErrors.h"

#include "Host/Receiver/World/MediaPlayer.h"

namespace Media {

namespace MediaError = Receiver::MediaError;

namespace {

constexpr unsigned kFirstHttpFailure = 400;

std::int32_t ofResource(const GError& error, unsigned httpStatus, bool remote) {
    switch (error.code) {
        case GST_RESOURCE_ERROR_NO_SPACE_LEFT:
        case GST_RESOURCE_ERROR_BUSY:
            return MediaError::InsufficientResources;
        case GST_RESOURCE_ERROR_SEEK:
            return MediaError::PositionNotAvailable;
        default:
            // A server that answers "no" was reached; everything else that the network does is a connection
            // that failed or was lost.
            return !remote || httpStatus >= kFirstHttpFailure ? MediaError::ContentNotAvailable
                                                              : MediaError::CannotConnect;
    }
}

std::int32_t ofStream(const GError& error) {
    switch (error.code) {
        case GST_STREAM_ERROR_CODEC_NOT_FOUND:
            return MediaError::UnsupportedFormat;
        case GST_STREAM_ERROR_DECRYPT:
        case GST_STREAM_ERROR_DECRYPT_NOKEY:
            return MediaError::Unidentified;
        default:
            return MediaError::Corrupt;
    }
}

// Whether it is the reading element itself that gave up, and not one that follows it. For a server that
// cannot be reached this is all that is said.
bool isLostSource(GstMessage* message, const GstStructure* details) {
    int flow = GST_FLOW_OK;
    return details != nullptr && gst_structure_get_int(details, "flow-return", &flow) &&
           flow == GST_FLOW_ERROR && GST_IS_ELEMENT(GST_MESSAGE_SRC(message)) &&
           GST_OBJECT_FLAG_IS_SET(GST_MESSAGE_SRC(message), GST_ELEMENT_FLAG_SOURCE);
}

// Names of headers keep the server's spelling.
std::string header(const GstStructure& headers, const char* name) {
    for (int i = 0; i < gst_structure_n_fields(&headers); ++i) {
        const char* field = gst_structure_nth_field_name(&headers, static_cast<guint>(i));
        if (g_ascii_strcasecmp(field, name) != 0)
            continue;
        const char* value = gst_structure_get_string(&headers, field);
        const Host::GChars lower(g_ascii_strdown(value == nullptr ? "" : value, -1));
        return lower.get();
    }
    return {};
}

}  // namespace

std::int32_t mediaErrorOf(GstMessage* message, const std::string& url) {
    GError* rawError = nullptr;
    gst_message_parse_error(message, &rawError, nullptr);
    const Host::GErrorHandle error(rawError);
    const GstStructure* details = nullptr;
    gst_message_parse_error_details(message, &details);
    unsigned httpStatus = 0;
    if (details != nullptr)
        gst_structure_get_uint(details, "http-status-code", &httpStatus);

    if (error->domain == GST_RESOURCE_ERROR)
        return ofResource(*error, httpStatus, isRemote(url));
    if (error->domain == GST_STREAM_ERROR)
        return isRemote(url) && isLostSource(message, details) ? MediaError::CannotConnect : ofStream(*error);
    if (error->domain == GST_CORE_ERROR && error->code == GST_CORE_ERROR_MISSING_PLUGIN)
        return MediaError::UnsupportedFormat;
    return MediaError::Unidentified;
}

std::string reasonOf(GstMessage* message) {
    GError* error = nullptr;
    char* details = nullptr;
    gst_message_parse_error(message, &error, &details);
    const Host::GErrorHandle ownedError(error);
    const Host::GChars ownedDetails(details);
    // The details' first line is a place in GStreamer's source, and the second one, if there is one, says
    // more.
    const std::string more = details ? details : "";
    const auto second = more.find('\n');
    return error->message + (second == std::string::npos ? "" : " (" + more.substr(second + 1) + ")");
}

bool refusesRanges(GstMessage* message) {
    const auto* response = gst_structure_get_value(gst_message_get_structure(message), "response-headers");
    if (response == nullptr || !GST_VALUE_HOLDS_STRUCTURE(response))
        return false;
    const auto& headers = *gst_value_get_structure(response);
    return header(headers, "accept-ranges") != "bytes" && header(headers, "content-range").empty();
}

bool isRemote(const std::string& url) {
    return g_strcmp0(g_uri_peek_scheme(url.c_str()), "file") != 0 && url.find("://") != std::string::npos;
}

}  // namespace Media
