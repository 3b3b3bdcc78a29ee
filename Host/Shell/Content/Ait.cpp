#include "Host/Shell/Content/Ait.h"

#include <algorithm>
#include <cstdio>
#include <tuple>

#include "Host/Inc/GHandles.h"

namespace Shell {

using namespace Host;

namespace {

constexpr char kApplicationType[] = "application/vnd.hbbtv.xhtml+xml";
constexpr int kDecimal = 10;
constexpr int kHexadecimal = 16;

// What the bits of a profile ask for, as user agents name it.
constexpr const char* kProfileOptions[] = {"+DL", "+PVR", "+RTSP"};

struct Reader {
    std::string url;
    std::vector<AitApplication> applications = {};
    AitApplication application = {};
    std::string organisation = {};
    std::string number = {};
    std::string base = {};
    std::string location = {};
    std::string text = {};
    bool isTable = false;
};

std::uint32_t numberOf(const std::string& text, int base) {
    return static_cast<std::uint32_t>(g_ascii_strtoull(text.c_str(), nullptr, base));
}

std::string hexadecimal(const std::string& decimal) {
    return GChars(g_strdup_printf("%x", numberOf(decimal, kDecimal))).get();
}

std::string resolved(const std::string& url, const std::string& relative) {
    const GChars whole(g_uri_resolve_relative(
        url.c_str(), relative.c_str(),
        static_cast<GUriFlags>(G_URI_FLAGS_ENCODED | G_URI_FLAGS_PARSE_RELAXED), nullptr));
    return whole ? whole.get() : relative;
}

// "?a" and "#b" of "x?a#b".
std::pair<std::string, std::string> tailOf(const std::string& url) {
    const size_t hash = std::min(url.find('#'), url.size());
    const size_t question = std::min(url.find('?'), hash);
    return {url.substr(question, hash - question), url.substr(hash)};
}

// "http://host:80" of an address, or the pattern of all that begins with it.
std::string originOf(const std::string& url) {
    char* scheme = nullptr;
    char* host = nullptr;
    int port = 0;
    const bool split =
        g_uri_split_network(url.c_str(), G_URI_FLAGS_SCHEME_NORMALIZE, &scheme, &host, &port, nullptr);
    const GChars ownedScheme(scheme);
    const GChars ownedHost(host);
    if (!split || port <= 0 || !g_str_has_prefix(scheme, "http"))
        return url + "*";
    return std::string(scheme) + "://" + host + ":" + std::to_string(port);
}

bool hasOptions(const std::string& options, std::uint32_t profile) {
    for (const char* option : kProfileOptions) {
        if ((profile & 1U) != 0 && options.find(option) == std::string::npos)
            return false;
        profile >>= 1U;
    }
    return profile == 0;
}

void finishApplication(Reader& reader) {
    AitApplication& application = reader.application;
    const auto [query, fragment] = tailOf(reader.url);
    const std::string url = resolved(reader.url, reader.base + reader.location);
    const auto [ownQuery, ownFragment] = tailOf(url);
    application.url = url.substr(0, url.size() - ownQuery.size() - ownFragment.size()) + ownQuery;
    if (!query.empty())
        application.url += (ownQuery.empty() ? "?" : "&") + query.substr(1);
    application.url += fragment.empty() ? ownFragment : fragment;
    application.id = hexadecimal(reader.organisation) + "." + hexadecimal(reader.number);
    reader.applications.push_back(application);
}

// Names come with whatever prefix the table gives its namespace.
std::string localName(const char* element) {
    const char* colon = g_strrstr(element, ":");
    return colon ? colon + 1 : element;
}

void onStart(GMarkupParseContext*, const char* element, const char**, const char**, gpointer self, GError**) {
    auto& reader = *static_cast<Reader*>(self);
    const std::string name = localName(element);
    reader.text.clear();
    if (name == "ServiceDiscovery") {
        reader.isTable = true;
    } else if (name == "Application") {
        reader.application = {};
        reader.base.clear();
        reader.location.clear();
    } else if (name == "mhpVersion") {
        reader.application.versions.emplace_back();
    }
}

void onEnd(GMarkupParseContext*, const char* element, gpointer self, GError**) {
    auto& reader = *static_cast<Reader*>(self);
    AitApplication& application = reader.application;
    const std::string name = localName(element);
    const std::string text = GChars(g_strstrip(g_strdup(reader.text.c_str()))).get();
    reader.text.clear();
    AitVersion* version = application.versions.empty() ? nullptr : &application.versions.back();
    if (name == "Application")
        finishApplication(reader);
    else if (name == "appName" && application.name.empty())
        application.name = text;
    else if (name == "orgId")
        reader.organisation = text;
    else if (name == "appId")
        reader.number = text;
    else if (name == "OtherApp" || name == "DvbApp")
        application.type = text;
    else if (name == "controlCode")
        application.controlCode = text;
    else if (name == "priority")
        application.priority = numberOf(text, kHexadecimal);
    else if (name == "URLBase" && reader.base.empty())
        reader.base = text;
    else if (name == "applicationLocation")
        reader.location = text;
    else if (name == "BoundaryExtension")
        application.boundaries.push_back(originOf(text));
    else if (version && name == "profile")
        version->profile = numberOf(text, kHexadecimal);
    else if (version && name == "versionMajor")
        version->major = numberOf(text, kHexadecimal);
    else if (version && name == "versionMinor")
        version->minor = numberOf(text, kHexadecimal);
    else if (version && name == "versionMicro")
        version->micro = numberOf(text, kHexadecimal);
}

void onText(GMarkupParseContext*, const char* text, gsize length, gpointer self, GError**) {
    static_cast<Reader*>(self)->text.append(text, length);
}

}  // namespace

bool readAit(const std::string& xml, const std::string& url, std::vector<AitApplication>& applications,
             std::string& problem) {
    static const GMarkupParser s_parser = {onStart, onEnd, onText, nullptr, nullptr};
    Reader reader{url};
    const std::unique_ptr<GMarkupParseContext, GFree<&g_markup_parse_context_free>> context(
        g_markup_parse_context_new(&s_parser, G_MARKUP_TREAT_CDATA_AS_TEXT, &reader, nullptr));
    GErrorSlot error;
    if (!g_markup_parse_context_parse(context.get(), xml.data(), static_cast<gssize>(xml.size()),
                                      error.out()) ||
        !g_markup_parse_context_end_parse(context.get(), error.out()))
        problem = error.message();
    else if (!reader.isTable)
        problem = "there is no element ServiceDiscovery";
    applications = std::move(reader.applications);
    return problem.empty();
}

std::string refusalOf(const AitApplication& application, const std::string& userAgent) {
    if (!application.type.empty() && application.type != kApplicationType)
        return "it is of the type " + application.type;
    if (application.controlCode != "AUTOSTART" && application.controlCode != "PRESENT")
        return "its control code is " + application.controlCode;
    unsigned major = 0;
    unsigned minor = 0;
    unsigned micro = 0;
    char options[64] = "";
    const size_t token = std::min(userAgent.find("HbbTV/"), userAgent.size());
    if (std::sscanf(userAgent.c_str() + token, "HbbTV/%u.%u.%u (%63[^;]", &major, &minor, &micro, options) <
        3)
        return {};
    const auto fits = [&](const AitVersion& version) {
        return hasOptions(options, version.profile) &&
               std::tie(version.major, version.minor, version.micro) <= std::tie(major, minor, micro);
    };
    if (application.versions.empty() ||
        std::any_of(application.versions.begin(), application.versions.end(), fits))
        return {};
    const AitVersion& wanted = application.versions.front();
    return "it is for the profile " + std::to_string(wanted.profile) + " of version " +
           std::to_string(wanted.major) + "." + std::to_string(wanted.minor) + "." +
           std::to_string(wanted.micro) + ", this television is of " + std::to_string(major) + "." +
           std::to_string(minor) + "." + std::to_string(micro) + options;
}

}  // namespace Shell
