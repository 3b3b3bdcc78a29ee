#include "JavaScript/Src/CConfigurationImpl.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"

namespace OipfJavaScript {

namespace {

template <typename Read>
std::string ReadText(Read read) {
    std::string text;
    (CDAEBrowserAPIWK::GetInstance()->*read)(text);
    return text;
}

}  // namespace

std::string CConfigurationImpl::GetPreferredAudioLanguage() const {
    HBBTV_LOG_INFO("[%s:%d] %s", "CONFIGURATION", __LINE__, __func__);
    return ReadText(&CDAEBrowserAPIWK::GetPreferredAudioLang);
}

std::string CConfigurationImpl::GetPreferredSubtitleLanguage() const {
    HBBTV_LOG_INFO("[%s:%d] %s", "CONFIGURATION", __LINE__, __func__);
    return ReadText(&CDAEBrowserAPIWK::GetPreferredSubtitleLang);
}

std::string CConfigurationImpl::GetPreferredUILanguage() const {
    HBBTV_LOG_INFO("[%s:%d] %s", "CONFIGURATION", __LINE__, __func__);
    return ReadText(&CDAEBrowserAPIWK::GetPreferredUILang);
}

std::string CConfigurationImpl::GetCountryId() const {
    HBBTV_LOG_INFO("[%s:%d] %s", "CONFIGURATION", __LINE__, __func__);
    return ReadText(&CDAEBrowserAPIWK::GetCountryID);
}

}  // namespace OipfJavaScript
