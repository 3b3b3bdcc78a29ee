// What an implementation object reports about the call it has just served.
#pragma once

#include <cstdint>
#include <string>

namespace OipfJavaScript {

// First fields of every implementation object. The binding resets them before each call and reads them after
// it.
class CallStatus {
 public:
    enum Value : int32_t {
        kOk = 0,         // the page gets the result
        kNull = 1,       // the page gets null, as for every other value not listed here
        kUndefined = 2,  // the page gets undefined
    };

    void ResetStatus() {
        m_status = kOk;
        if (m_errorName != kSecurityError)
            m_errorName = kSecurityError;
        m_errorMessage.clear();
    }

    // The call gives null; a page sees an exception only when there is also a message.
    void Fail() { m_status = kNull; }
    void Fail(const char* message) {
        m_status = kNull;
        m_errorMessage = message;
    }
    void Fail(const char* name, const char* message) {
        m_errorName = name;
        Fail(message);
    }

    int32_t m_status = kOk;
    // An implementation that only fills in a message produces a "SecurityError".
    std::string m_errorName = kSecurityError;
    std::string m_errorMessage;

 private:
    static constexpr const char* kSecurityError = "SecurityError";
};

}  // namespace OipfJavaScript
