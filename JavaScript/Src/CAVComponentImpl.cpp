#include "JavaScript/Src/CAVComponentImpl.h"

#include "API/Src/IAVComponent.h"

namespace OipfJavaScript {

CAVComponentImpl::CAVComponentImpl(int32_t type, const std::string& encoding, bool encrypted,
                                   int32_t aspectRatio, const std::string& language, bool audioDescription,
                                   uint32_t audioChannels, bool hearingImpaired, int16_t pid,
                                   uint8_t componentTag)
    : m_componentTag(componentTag),
      m_pid(pid),
      m_type(type),
      m_encoding(encoding),
      m_encrypted(encrypted),
      m_aspectRatio(aspectRatio),
      m_language(language),
      m_audioDescription(audioDescription),
      m_audioChannels(audioChannels),
      m_hearingImpaired(hearingImpaired) {}

const std::string& CAVComponentImpl::GetEncoding() {
    if (m_type == E_COMPONENT_TYPE_SUBTITLE)
        m_status = kUndefined;
    return m_encoding;
}

const std::string& CAVComponentImpl::GetLanguage() {
    if (m_language.empty())
        m_status = kUndefined;
    return m_language;
}

}  // namespace OipfJavaScript
