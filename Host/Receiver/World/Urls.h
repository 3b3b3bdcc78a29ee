// Addresses as the receiver judges them: wildcard patterns, origins, and the service that a dvb: address
// names.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace Receiver {

// At least one part, perhaps an empty one.
[[nodiscard]] std::vector<std::string> split(const std::string& text, char separator);

// "*" stands for any run of characters; everything else is compared as it is.
[[nodiscard]] bool matchesPattern(const std::string& text, const std::string& pattern);
[[nodiscard]] bool matchesAny(const std::string& text, const std::vector<std::string>& patterns);

// The scheme in lower case, empty for a text that is no absolute address.
[[nodiscard]] std::string schemeOf(const std::string& url);

// "scheme://host:port", the port always given where the scheme has a default one; "file://" for files and
// "dvb://" for dvb:/path. Empty for what has no origin (relative addresses, data:, about:), which therefore
// belongs nowhere.
[[nodiscard]] std::string originOf(const std::string& url);

// dvb://onid.[tsid].sid[;event], each number in hexadecimal.
struct DvbService {
    std::uint32_t onid = 0;
    std::optional<std::uint32_t> tsid;
    std::uint32_t sid = 0;
    std::optional<std::uint16_t> eventId;
};

[[nodiscard]] std::optional<DvbService> parseDvbService(const std::string& url);

// "10.1" of dvb://current.ait/10.1?x=y, and the "?x=y" that is left; empty when the address names no
// application.
struct AitReference {
    std::string application;
    std::string rest;
};

[[nodiscard]] std::optional<AitReference> parseAitReference(const std::string& url);

}  // namespace Receiver
