// What a message of the common-interface module says to a DRM agent: a reply to a message of a page
// (E_REPLY_MESSAGE), or something that the module says by itself (E_SYSTEM_INFO).
#pragma once

#include <cstdint>
#include <string>

class SASMessage;

class SASDrmMessage {
 public:
    // Result codes of DRM messages, as pages know them.
    enum EResult : int32_t { E_SUCCESSFUL = 0, E_UNKNOWN_ERROR = 1, E_HIGHEST_RESULT = 6 };

    explicit SASDrmMessage(const SASMessage& message);

    // The module's own bytes; empty when there are none.
    [[nodiscard]] const std::string& Data() const { return m_data; }
    // A reply without a status is a success; a status that is not known, or that is broken, an unknown error.
    [[nodiscard]] int32_t Result() const { return m_result; }
    // "urn:dvb:casystemid:19219"
    [[nodiscard]] const std::string& DrmSystemId() const { return m_drmSystemId; }

 private:
    std::string m_data;
    int32_t m_result = E_SUCCESSFUL;
    std::string m_drmSystemId;
};
