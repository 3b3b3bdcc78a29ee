#include "Wrapper/Src/SASDrmMessage.h"

#include "Wrapper/Src/SASMessage.h"

SASDrmMessage::SASDrmMessage(const SASMessage& message)
    : m_drmSystemId("urn:dvb:casystemid:" + std::to_string(message.CaSystemId())) {
    if (const SASMessage::Item* data = message.Find(SASMessage::E_CA_VENDOR_DATA))
        m_data = data->bytes;
    if (const SASMessage::Item* status = message.Find(SASMessage::E_STATUS)) {
        const int code = status->bytes.size() == 1 ? static_cast<uint8_t>(status->bytes.front()) : -1;
        m_result = code >= E_SUCCESSFUL && code <= E_HIGHEST_RESULT ? code : E_UNKNOWN_ERROR;
    }
}
