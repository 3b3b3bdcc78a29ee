#include "Host/Receiver/World/Capabilities.h"

#include <algorithm>
#include <map>
#include <vector>

#include "Host/Receiver/World/Urls.h"

namespace Receiver {

namespace {

// What else may not stand in the document is a space.
std::string escaped(const std::string& text) {
    static const std::map<char, const char*> escapes = {{'&', "&amp;"},   {'<', "&lt;"},   {'>', "&gt;"},
                                                        {'\'', "&apos;"}, {'"', "&quot;"}, {'\\', "&#92;"}};
    std::string result;
    for (const char character : text) {
        if (const auto escape = escapes.find(character); escape != escapes.end())
            result += escape->second;
        else
            result += static_cast<unsigned char>(character) < ' ' ? ' ' : character;
    }
    return result;
}

std::string attribute(const char* name, const std::string& value) {
    return std::string(" ") + name + "='" + escaped(value) + "'";
}

std::string avProfile(const char* element, const AvProfile& profile) {
    std::string xml =
        std::string("<") + element + attribute("name", profile.name) + attribute("type", profile.type);
    if (!profile.transport.empty())
        xml += attribute("transport", profile.transport);
    if (!profile.drmSystemId.empty())
        xml += attribute("DRMSystemID", profile.drmSystemId);
    return xml + "/>";
}

std::vector<std::string> parts(const std::string& name) {
    auto result = split(name, '+');
    // "+DRM" names an option alone.
    std::erase(result, "");
    return result;
}

}  // namespace

std::string capabilitiesXml(const Scenario& scenario) {
    if (scenario.capabilities.description)
        return *scenario.capabilities.description;
    std::string xml = "<?xml version='1.0' encoding='UTF-8'?><profilelist>";
    for (const auto& profile : scenario.capabilities.uiProfiles) {
        xml += "<ui_profile" + attribute("name", profile) +
               "><ext><parentalcontrol schemes='dvb-si'>true</parentalcontrol>"
               "<clientMetadata type='dvb-si'>true</clientMetadata></ext></ui_profile>";
    }
    for (const auto& profile : scenario.capabilities.audio)
        xml += avProfile("audio_profile", profile);
    for (const auto& profile : scenario.capabilities.video)
        xml += avProfile("video_profile", profile);
    return xml + "</profilelist>";
}

bool hasCapability(const Scenario& scenario, const std::string& name) {
    const auto wanted = parts(name);
    if (wanted.empty())
        return false;
    return std::ranges::any_of(scenario.capabilities.uiProfiles, [&wanted](const std::string& profile) {
        const auto offered = parts(profile);
        return std::ranges::all_of(wanted, [&offered](const std::string& part) {
            return std::ranges::find(offered, part) != offered.end();
        });
    });
}

}  // namespace Receiver
