#include "Host/Receiver/World/Capabilities.h"

#include <algorithm>
#include <vector>

namespace Receiver {

namespace {

std::string escaped(const std::string& text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '&':
                result += "&amp;";
                break;
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '\'':
                result += "&apos;";
                break;
            case '"':
                result += "&quot;";
                break;
            case '\\':
                result += "&#92;";
                break;
            default:
                if (static_cast<unsigned char>(character) < ' ')
                    result += ' ';
                else
                    result += character;
        }
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
    std::vector<std::string> result(1);
    for (const char character : name) {
        if (character == '+')
            result.emplace_back();
        else
            result.back() += character;
    }
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
    return std::any_of(scenario.capabilities.uiProfiles.begin(), scenario.capabilities.uiProfiles.end(),
                       [&wanted](const std::string& profile) {
                           const auto offered = parts(profile);
                           return std::all_of(
                               wanted.begin(), wanted.end(), [&offered](const std::string& part) {
                                   return std::find(offered.begin(), offered.end(), part) != offered.end();
                               });
                       });
}

}  // namespace Receiver
