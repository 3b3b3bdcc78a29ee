#include "Host/Receiver/World/Urls.h"

#include <algorithm>
#include <charconv>

#include <glib.h>

#include "Host/Inc/GHandles.h"

namespace Receiver {

namespace {

constexpr const char kDvbScheme[] = "dvb://";

std::optional<std::uint32_t> hexadecimal(const std::string& digits) {
    std::uint32_t value = 0;
    const auto* end = digits.data() + digits.size();
    const auto [stopped, error] = std::from_chars(digits.data(), end, value, 16);
    if (digits.empty() || error != std::errc() || stopped != end || value > 0xFFFF)
        return std::nullopt;
    return value;
}

int defaultPort(const std::string& scheme) {
    if (scheme == "http")
        return 80;
    return scheme == "https" ? 443 : -1;
}

std::string lowerCase(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) { return g_ascii_tolower(c); });
    return text;
}

}  // namespace

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts(1);
    for (const char character : text) {
        if (character == separator)
            parts.emplace_back();
        else
            parts.back() += character;
    }
    return parts;
}

bool matchesPattern(const std::string& text, const std::string& pattern) {
    std::size_t inText = 0;
    std::size_t inPattern = 0;
    std::size_t starAt = std::string::npos;
    std::size_t resumeAt = 0;
    while (inText < text.size()) {
        if (inPattern < pattern.size() && pattern[inPattern] == '*') {
            starAt = inPattern++;
            resumeAt = inText;
        } else if (inPattern < pattern.size() && pattern[inPattern] == text[inText]) {
            ++inPattern;
            ++inText;
        } else if (starAt != std::string::npos) {
            inPattern = starAt + 1;
            inText = ++resumeAt;
        } else {
            return false;
        }
    }
    return std::all_of(pattern.begin() + static_cast<std::ptrdiff_t>(inPattern), pattern.end(),
                       [](char character) { return character == '*'; });
}

bool matchesAny(const std::string& text, const std::vector<std::string>& patterns) {
    return std::any_of(patterns.begin(), patterns.end(),
                       [&text](const std::string& pattern) { return matchesPattern(text, pattern); });
}

std::string schemeOf(const std::string& url) {
    const auto colon = url.find(':');
    if (colon == std::string::npos || colon == 0)
        return {};
    const auto scheme = lowerCase(url.substr(0, colon));
    const bool wellFormed =
        g_ascii_isalpha(scheme.front()) && std::all_of(scheme.begin(), scheme.end(), [](char c) {
            return g_ascii_isalnum(c) || c == '+' || c == '-' || c == '.';
        });
    return wellFormed ? scheme : std::string();
}

std::string originOf(const std::string& url) {
    const auto scheme = schemeOf(url);
    if (scheme == "file")
        return "file://";
    if (scheme != "http" && scheme != "https" && scheme != "dvb")
        return {};
    char* rawHost = nullptr;
    int port = -1;
    const auto flags = static_cast<GUriFlags>(G_URI_FLAGS_PARSE_RELAXED | G_URI_FLAGS_ENCODED_PATH |
                                              G_URI_FLAGS_ENCODED_QUERY | G_URI_FLAGS_ENCODED_FRAGMENT);
    (void)g_uri_split_network(url.c_str(), flags, nullptr, &rawHost, &port, nullptr);
    const Host::GChars givenHost(rawHost);
    const std::string host = givenHost ? lowerCase(givenHost.get()) : std::string();
    // A path of the current service has an origin of its own.
    if (host.empty())
        return scheme == "dvb" && url.find('/') == sizeof("dvb:") - 1 ? kDvbScheme : std::string();
    if (port == -1)
        port = defaultPort(scheme);
    std::string origin = scheme;
    origin.append("://");
    const bool isIpv6 = host.find(':') != std::string::npos;
    origin.append(isIpv6 ? "[" : "").append(host).append(isIpv6 ? "]" : "");
    if (port != -1)
        origin.append(":").append(std::to_string(port));
    return origin;
}

std::optional<DvbService> parseDvbService(const std::string& url) {
    if (!url.starts_with(kDvbScheme))
        return std::nullopt;
    const auto locator = url.substr(sizeof(kDvbScheme) - 1);
    const auto service = locator.substr(0, locator.find('/'));
    const auto parts = split(service, ';');
    const auto numbers = split(parts.front(), '.');
    if (parts.size() > 2 || numbers.size() < 3)
        return std::nullopt;
    const auto onid = hexadecimal(numbers[0]);
    const auto tsid = hexadecimal(numbers[1]);
    const auto sid = hexadecimal(numbers[2]);
    if (!onid || !sid || (!numbers[1].empty() && !tsid))
        return std::nullopt;
    DvbService parsed{*onid, tsid, *sid, std::nullopt};
    if (parts.size() == 2) {
        // An event may be followed by its transport components, which name it no further.
        const auto event = hexadecimal(parts[1].substr(0, parts[1].find('~')));
        if (!event)
            return std::nullopt;
        parsed.eventId = static_cast<std::uint16_t>(*event);
    }
    return parsed;
}

std::optional<AitReference> parseAitReference(const std::string& url) {
    if (!url.starts_with(kDvbScheme))
        return std::nullopt;
    const auto marker = url.find(".ait/");
    if (marker == std::string::npos)
        return std::nullopt;
    const auto path = url.substr(marker + 5);
    const auto end = std::min(path.find_first_of("?#"), path.size());
    return AitReference{path.substr(0, end), path.substr(end)};
}

}  // namespace Receiver
