#include "Host/WebProcess/WKObjects.h"

#include <algorithm>
#include <cstring>

#include <glib.h>

namespace WebProcess {

void WKObject::release() {
    g_return_if_fail(m_references > 0);
    if (--m_references == 0)
        delete this;
}

Text::Text(const char* utf8) {
    if (utf8 && g_utf8_validate(utf8, -1, nullptr))
        m_utf8 = utf8;
}

size_t Text::copy(char* buffer, size_t size) const {
    if (!buffer || size == 0)
        return 0;
    size_t length = std::min(m_utf8.size(), size - 1);
    if (length < m_utf8.size()) {
        // Continuation bytes begin with the bits 10: step back to the start of the character that does not
        // fit.
        while (length > 0 && (static_cast<unsigned char>(m_utf8[length]) & 0xC0) == 0x80)
            --length;
    }
    std::memcpy(buffer, m_utf8.data(), length);
    buffer[length] = '\0';
    return length + 1;
}

}  // namespace WebProcess
