// Application information tables in their XML form.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Shell {

struct AitVersion {
    std::uint32_t profile = 0;  // Options that are needed, one a bit; 0 is the basic profile.
    std::uint32_t major = 0;
    std::uint32_t minor = 0;
    std::uint32_t micro = 0;
};

struct AitApplication {
    std::string id;  // As in dvb://current.ait/13.1: organisation and application, hexadecimal.
    std::string name;
    std::string type;
    std::string controlCode;
    std::uint32_t priority = 0;
    std::vector<AitVersion> versions;
    std::string url;
    std::vector<std::string> boundaries;  // Origins as the receiver writes them.

    [[nodiscard]] bool startsItself() const { return controlCode == "AUTOSTART"; }
};

constexpr char kAitMimeType[] = "application/vnd.dvb.ait+xml";

// The applications of a table that was found at the address; the address's own query and fragment go with
// each one's. False, with the reason, for what is no such table.
[[nodiscard]] bool readAit(const std::string& xml, const std::string& url,
                           std::vector<AitApplication>& applications, std::string& problem);

// Why a television of the user agent does not run the application; empty if it does. One that names no
// version of HbbTV runs all.
[[nodiscard]] std::string refusalOf(const AitApplication& application, const std::string& userAgent);

}  // namespace Shell
