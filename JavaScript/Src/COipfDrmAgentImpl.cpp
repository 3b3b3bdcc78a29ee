#include "JavaScript/Src/COipfDrmAgentImpl.h"

#include <string_view>

#include "API/Src/IPRResponse.h"
#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"
#include "InjectedBundle/Src/JSConversions.h"
#include "Wrapper/Src/SASDrmMessage.h"
#include "Wrapper/Src/SASMessage.h"

namespace OipfJavaScript {

namespace {

constexpr char kMessageResult[] = "DRMMessageResult";
constexpr char kSystemMessage[] = "DRMSystemMessage";
constexpr char kHexadecimalType[] = "application/vnd.oipf.cspg-hexbinary";
// A transaction that the receiver did not begin.
constexpr int kNotSent = -1;

std::string ToHexadecimal(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string text;
    text.reserve(bytes.size() * 2);
    for (const char c : bytes) {
        const auto byte = static_cast<uint8_t>(c);
        text += kDigits[byte >> 4];
        text += kDigits[byte & 0x0F];
    }
    return text;
}

}  // namespace

COipfDrmAgentImpl::COipfDrmAgentImpl() : COipfDrmAgentBase(jiOipfDrmAgent::ID) {
    CDAEBrowserAPIWK::GetInstance()->SubscribeEvents(this);
}

COipfDrmAgentImpl::~COipfDrmAgentImpl() {
    CDAEBrowserAPIWK::GetInstance()->UnsubscribeEvents(this);
}

std::string COipfDrmAgentImpl::SendDRMMessage(const std::string& msgType, const std::string& msg,
                                              const std::string& drmSystemID) {
    int transaction = kNotSent;
    CDAEBrowserAPIWK::GetInstance()->SendDRMMessage(transaction, msgType, msg, drmSystemID);
    if (transaction == kNotSent) {
        HBBTV_LOG_OBJECT(ERROR, "a message to %s was not sent", drmSystemID.c_str());
        Fail();
        return {};
    }
    m_unanswered[static_cast<uint32_t>(transaction)] =
        msgType == kHexadecimalType ? Form::Hexadecimal : Form::Text;
    return std::to_string(transaction);
}

void COipfDrmAgentImpl::OnEvent(event_t event) {
    if (event.event == E_PLAYREADY_RESPONSE) {
        if (const auto* response = event.GetRecord<IPRResponse>())
            OnPlayReadyResponse(*response);
    } else if (event.event == E_SAS_MESSAGE) {
        if (const auto* message = event.GetRecord<SASMessage>())
            OnSASMessage(*message);
    }
}

void COipfDrmAgentImpl::OnPlayReadyResponse(const IPRResponse& response) {
    if (m_unanswered.erase(response.transactionId) != 0)
        FireResult(response.transactionId, response.resultMessage, response.resultCode);
}

void COipfDrmAgentImpl::OnSASMessage(const SASMessage& message) {
    if (message.CommandId() == SASMessage::E_REPLY_MESSAGE) {
        const auto sent = m_unanswered.extract(message.TransactionId());
        if (sent.empty())
            return;
        const SASDrmMessage reply(message);
        FireResult(
            message.TransactionId(),
            sent.mapped() == Form::Hexadecimal ? ToHexadecimal(reply.Data()) : WellFormedUtf8(reply.Data()),
            reply.Result());
    } else if (message.CommandId() == SASMessage::E_SYSTEM_INFO) {
        const SASDrmMessage info(message);
        if (JSContextRef context = ContextFor(kSystemMessage)) {
            DispatchEvent(kSystemMessage, "msg", MakeString(context, WellFormedUtf8(info.Data())),
                          "DRMSystemID", MakeString(context, info.DrmSystemId()), nullptr);
        }
    }
}

void COipfDrmAgentImpl::FireResult(uint32_t transaction, const std::string& message, int32_t code) {
    JSContextRef context = ContextFor(kMessageResult);
    if (context == nullptr)
        return;
    // As the page was given it.
    const std::string id = std::to_string(static_cast<int32_t>(transaction));
    DispatchEvent(kMessageResult, "msgID", MakeString(context, id), "resultMsg", MakeString(context, message),
                  "resultCode", JSValueMakeNumber(context, code), nullptr);
}

}  // namespace OipfJavaScript
