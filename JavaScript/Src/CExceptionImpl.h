// The error that bindings throw: kind and text.
#pragma once

#include <string>

#include "InjectedBundle/gen/js/CExceptionBase.h"

namespace OipfJavaScript {

class CExceptionImpl : public CExceptionBase {
 public:
    // Pages read the kind from `name` or from `message`, and the human text from `description`: both carry
    // `name`.
    CExceptionImpl(const std::string& name, const std::string& text)
        : m_name(name), m_message(name), m_description(text) {}

    [[nodiscard]] const std::string& GetMessage() const { return m_message; }
    [[nodiscard]] const std::string& GetName() const { return m_name; }
    [[nodiscard]] const std::string& GetDescription() const { return m_description; }

    [[nodiscard]] std::string getCustomToString() const;
    // Null leaves the conversion to the engine.
    [[nodiscard]] JSValueRef customConvertToType(JSContextRef context, JSObjectRef object, JSType type,
                                                 JSValueRef* exception) const;

 private:
    std::string m_name;
    std::string m_message;
    std::string m_description;
};

}  // namespace OipfJavaScript
