#include "JavaScript/Src/StreamEventHandler.h"

#include "CSP/Inc/PCLog.h"
#include "IPC/DBUS/Src/DAEBrowserAPIWK_DBus.h"

namespace OipfJavaScript {

CStreamEventHandler::~CStreamEventHandler() {
    t_RemoveAllListeners();
}

void CStreamEventHandler::AddEventListener(const std::string& targetURL, const std::string& eventName,
                                           const std::string& listenerId, JSValueRef listener) {
    HBBTV_LOG_OBJECT(INFO, "adding event listener, targetURL=%s, eventName=%s, listener=0x%lx",
                     targetURL.c_str(), eventName.c_str(), reinterpret_cast<unsigned long>(listener));
    const TDSMCCJobId jobId =
        CDAEBrowserAPIWK::GetInstance()->StreamEventSubscribe(targetURL.c_str(), eventName.c_str());
    if (jobId == 0) {
        HBBTV_LOG_OBJECT(ERROR, "couldn't subscribe for stream event, targetURL=%s, eventName=%s",
                         targetURL.c_str(), eventName.c_str());
    }
    HBBTV_LOG_OBJECT(INFO, "jobId=%lu", jobId);
    m_listeners.emplace(jobId, CEventListenerData{targetURL, eventName, listenerId, listener, false,
                                                  CDAEBrowserAPIWK::GetInstance()->Life()});
}

std::vector<std::string> CStreamEventHandler::RemoveEventListener(const std::string& targetURL,
                                                                  const std::string& eventName,
                                                                  JSValueRef listener) {
    std::vector<std::string> ids;
    for (auto& [jobId, entry] : m_listeners) {
        if (entry.removed || entry.listener != listener || entry.targetURL != targetURL ||
            entry.eventName != eventName)
            continue;
        ids.push_back(entry.listenerId);
        t_UnsubscribeStreamEvent(entry, jobId);
    }
    if (ids.empty()) {
        HBBTV_LOG_OBJECT(WARNING, "no listener found, targetURL=%s, eventName=%s", targetURL.c_str(),
                         eventName.c_str());
    }
    return ids;
}

void CStreamEventHandler::GetStreamEventIds(JSValueRef listener, std::vector<std::string>& ids) const {
    for (const auto& [jobId, entry] : m_listeners) {
        if (!entry.removed && entry.listener == listener)
            ids.push_back(entry.listenerId);
    }
}

void CStreamEventHandler::GetStreamEventIds(const CDSMCCStreamEventData& record,
                                            std::vector<std::string>& ids) {
    auto [at, end] = m_listeners.equal_range(record.jobId);
    if (at == end) {
        HBBTV_LOG_OBJECT(WARNING, "no listeners found for stream event id=%d, name=%s, dsmJobId=%ld",
                         record.eventId, record.name.c_str(), static_cast<long>(record.jobId));
    }
    while (at != end) {
        if (!IsAlive(at->second)) {
            at = m_listeners.erase(at);
        } else {
            ids.push_back(at->second.listenerId);
            ++at;
        }
    }
}

void CStreamEventHandler::FormatHexData(const uint8_t* bytes, size_t length, std::string& text) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    text.clear();
    text.reserve(length * 2);
    for (size_t i = 0; i < length; ++i) {
        text += kDigits[bytes[i] >> 4];
        text += kDigits[bytes[i] & 0x0F];
    }
}

const char* CStreamEventHandler::FormatStatus(EEventStatus status) {
    switch (status) {
        case E_EVENT_STATUS_TRIGGER:
            return "trigger";
        case E_EVENT_STATUS_ERROR:
            return "error";
        default:
            return "unknown";
    }
}

bool CStreamEventHandler::IsAlive(const CEventListenerData& entry) {
    return !entry.removed && entry.life == CDAEBrowserAPIWK::GetInstance()->Life();
}

void CStreamEventHandler::t_UnsubscribeStreamEvent(CEventListenerData& entry, TDSMCCJobId jobId) {
    HBBTV_LOG_OBJECT(INFO, "unsubscribing listener URL=%s, eventName=%s, dsmJobId=%lx",
                     entry.targetURL.c_str(), entry.eventName.c_str(), jobId);
    if (IsAlive(entry) && !CDAEBrowserAPIWK::GetInstance()->StreamEventUnsubscribe(jobId)) {
        HBBTV_LOG_OBJECT(ERROR,
                         "couldn't unsubscribe from stream event, targetURL=%s,  eventName=%s, dsmJobId=%lx",
                         entry.targetURL.c_str(), entry.eventName.c_str(), jobId);
    }
    entry.removed = true;
}

void CStreamEventHandler::t_RemoveAllListeners() {
    for (auto& [jobId, entry] : m_listeners) {
        if (IsAlive(entry))
            CDAEBrowserAPIWK::GetInstance()->SendStreamEventUnsubscribe(jobId);
    }
    m_listeners.clear();
}

}  // namespace OipfJavaScript
