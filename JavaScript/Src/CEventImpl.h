// The object that DOM level 2 listeners are called with.
#pragma once

#include <cstdint>
#include <string>

#include "InjectedBundle/gen/js/CEventBase.h"

namespace OipfJavaScript {

class CEventImpl : public CEventBase {
 public:
    explicit CEventImpl(const char* type);

    [[nodiscard]] const std::string& GetType() const { return m_type; }
    [[nodiscard]] JSValueRef getCustomTarget(JSContextRef context, JSObjectRef event) const;
    [[nodiscard]] JSValueRef getCustomCurrentTarget(JSContextRef context, JSObjectRef event) const;
    [[nodiscard]] JSValueRef getCustomSrcElement(JSContextRef context, JSObjectRef event) const;
    [[nodiscard]] int64_t GetTimeStamp() const { return m_timeStamp; }
    [[nodiscard]] int32_t GetEventPhase() const { return 0; }
    [[nodiscard]] bool GetBubbles() const { return false; }
    [[nodiscard]] bool GetCancelBubble() const { return false; }
    [[nodiscard]] bool GetCancelable() const { return false; }
    [[nodiscard]] bool GetDefaultPrevented() const { return false; }

    // There is no propagation and no default action: these only leave their trace.
    void PreventDefault();
    void InitEvent();
    void StopPropagation();
    void StopImmediatePropagation();

 private:
    std::string m_type;
    int64_t m_timeStamp;
};

}  // namespace OipfJavaScript
