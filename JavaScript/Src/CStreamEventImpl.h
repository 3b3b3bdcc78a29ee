// A trigger that was carried in the broadcast, as a listener gets it.
#pragma once

#include <string>
#include <utility>

#include "InjectedBundle/gen/js/CStreamEventBase.h"

namespace OipfJavaScript {

class CStreamEventImpl : public CStreamEventBase {
 public:
    CStreamEventImpl(std::string name, std::string data, std::string text, std::string status)
        : m_name(std::move(name)),
          m_data(std::move(data)),
          m_text(std::move(text)),
          m_eventStatus(std::move(status)) {}

    [[nodiscard]] const std::string& GetName() const { return m_name; }
    // The payload in hexadecimal digits.
    [[nodiscard]] const std::string& GetData() const { return m_data; }
    // The payload as UTF-8.
    [[nodiscard]] const std::string& GetText() const { return m_text; }
    [[nodiscard]] const std::string& GetStatus() const { return m_eventStatus; }

 private:
    std::string m_name;
    std::string m_data;
    std::string m_text;
    std::string m_eventStatus;
};

}  // namespace OipfJavaScript
