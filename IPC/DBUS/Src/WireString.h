// A text as it may be given to D-Bus.
#pragma once

#include <string>

#include "IPC/DBUS/Src/GLibHandles.h"

// The bus refuses text that is not UTF-8 and cannot carry a NUL. The text is cut at its first NUL, and what
// is ill-formed in it is replaced by U+FFFD. Borrows the text where it can; a null text is empty.
class WireString {
 public:
    explicit WireString(const std::string& text) : WireString(text.c_str()) {}
    explicit WireString(const char* text) : m_text(text != nullptr ? text : "") {
        if (g_utf8_validate(m_text, -1, nullptr))
            return;
        m_repaired.reset(g_utf8_make_valid(m_text, -1));
        m_text = m_repaired.get();
    }

    [[nodiscard]] const char* c_str() const { return m_text; }

 private:
    const char* m_text;
    GCharPtr m_repaired;
};
