// The page's road to DRM systems: a message goes out, and its answer comes back as an event.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "API/Src/IPluginController.h"
#include "InjectedBundle/gen/js/COipfDrmAgentBase.h"

namespace OipfJavaScript {

class COipfDrmAgentImpl final : public COipfDrmAgentBase, public IPluginController {
 public:
    COipfDrmAgentImpl();
    ~COipfDrmAgentImpl() override;

    // The transaction's id as text; null when the receiver could not be asked.
    [[nodiscard]] std::string SendDRMMessage(const std::string& msgType, const std::string& msg,
                                             const std::string& drmSystemID);

    void OnEvent(event_t event) override;

 private:
    void OnPlayReadyResponse(const IPRResponse& response);
    void OnSASMessage(const SASMessage& message);
    void FireResult(uint32_t transaction, const std::string& message, int32_t code);

    // Of every message that is not answered yet, what form its answer takes. Answers to the messages of other
    // agents, in this page or in others, are none of ours.
    enum class Form { Text, Hexadecimal };
    std::map<uint32_t, Form> m_unanswered;
};

}  // namespace OipfJavaScript
