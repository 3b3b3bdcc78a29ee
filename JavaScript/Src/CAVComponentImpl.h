// One elementary stream of what a player presents.
#pragma once

#include <cstdint>
#include <string>

#include "InjectedBundle/gen/js/CAVComponentBase.h"

namespace OipfJavaScript {

class CAVComponentImpl : public CAVComponentBase {
 public:
    // The aspect ratio comes in hundredths.
    CAVComponentImpl(int32_t type, const std::string& encoding, bool encrypted, int32_t aspectRatio,
                     const std::string& language, bool audioDescription, uint32_t audioChannels,
                     bool hearingImpaired, int16_t pid, uint8_t componentTag);

    [[nodiscard]] int32_t GetComponentTag() const { return m_componentTag; }
    [[nodiscard]] int32_t GetPid() const { return m_pid; }
    [[nodiscard]] int32_t GetType() const { return m_type; }
    // Undefined for subtitles.
    [[nodiscard]] const std::string& GetEncoding();
    [[nodiscard]] bool GetEncrypted() const { return m_encrypted; }
    [[nodiscard]] double GetAspectRatio() const { return m_aspectRatio / 100.0; }
    // Undefined when it is not known.
    [[nodiscard]] const std::string& GetLanguage();
    [[nodiscard]] bool GetAudioDescription() const { return m_audioDescription; }
    [[nodiscard]] uint32_t GetAudioChannels() const { return m_audioChannels; }
    [[nodiscard]] bool GetHearingImpaired() const { return m_hearingImpaired; }

 private:
    uint8_t m_componentTag;
    int16_t m_pid;
    int32_t m_type;
    std::string m_encoding;
    bool m_encrypted;
    double m_aspectRatio;
    std::string m_language;
    bool m_audioDescription;
    uint32_t m_audioChannels;
    bool m_hearingImpaired;
};

}  // namespace OipfJavaScript
