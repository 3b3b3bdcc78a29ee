// The stream-event subscriptions of one video/broadcast object. The listeners themselves are handlers of that
// object, each under an event name of its own; this registry knows which subscription leads to which.
#pragma once

#include <JavaScriptCore/JavaScript.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "API/Src/CDSMCCStreamEventData.h"

namespace OipfJavaScript {

struct CEventListenerData {
    std::string targetURL;
    std::string eventName;
    std::string listenerId;
    JSValueRef listener;  // kept alive as the object's handler; only compared here
    // The page is done with it, the receiver has been told. The entry goes when a trigger that was under way
    // arrives.
    bool removed = false;
    uint64_t life = 0;  // of the receiver that was subscribed at; in another one there is no subscription
};

class CStreamEventHandler {
 public:
    CStreamEventHandler() = default;
    CStreamEventHandler(const CStreamEventHandler&) = delete;
    CStreamEventHandler& operator=(const CStreamEventHandler&) = delete;
    // Runs in finalisers: touches no JavaScript.
    ~CStreamEventHandler();

    // Subscribes, whether or not there is a subscription of the same three already.
    void AddEventListener(const std::string& targetURL, const std::string& eventName,
                          const std::string& listenerId, JSValueRef listener);
    // Ends every subscription of these three. Gives the identifiers of their listeners.
    std::vector<std::string> RemoveEventListener(const std::string& targetURL, const std::string& eventName,
                                                 JSValueRef listener);

    // Appends the identifiers under which the function is registered, for whatever event.
    void GetStreamEventIds(JSValueRef listener, std::vector<std::string>& ids) const;
    // Appends the identifiers of the listeners that the trigger is for.
    void GetStreamEventIds(const CDSMCCStreamEventData& record, std::vector<std::string>& ids);

    // Two upper-case digits a byte.
    static void FormatHexData(const uint8_t* bytes, size_t length, std::string& text);
    [[nodiscard]] static const char* FormatStatus(EEventStatus status);

 private:
    [[nodiscard]] static bool IsAlive(const CEventListenerData& entry);
    void t_UnsubscribeStreamEvent(CEventListenerData& entry, TDSMCCJobId jobId);
    void t_RemoveAllListeners();

    // A receiver may give one job to several subscriptions of the same event.
    std::multimap<TDSMCCJobId, CEventListenerData> m_listeners;
};

}  // namespace OipfJavaScript
