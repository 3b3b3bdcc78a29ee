#include "Wrapper/Src/SASMessage.h"

#include <algorithm>
#include <utility>

namespace {

// Takes big-endian numbers and runs of bytes from the front of a message. Once something was not there,
// nothing is.
class Reader {
 public:
    explicit Reader(std::span<const uint8_t> bytes) : m_rest(bytes) {}

    uint32_t Number(size_t size) {
        uint32_t value = 0;
        for (const uint8_t byte : Bytes(size))
            value = value << 8 | byte;
        return value;
    }

    std::span<const uint8_t> Bytes(size_t size) {
        if (m_failed || size > m_rest.size()) {
            m_failed = true;
            return {};
        }
        const auto taken = m_rest.first(size);
        m_rest = m_rest.subspan(size);
        return taken;
    }

    [[nodiscard]] bool Failed() const { return m_failed; }
    [[nodiscard]] bool AtEnd() const { return !m_failed && m_rest.empty(); }

 private:
    std::span<const uint8_t> m_rest;
    bool m_failed = false;
};

}  // namespace

SASMessage::SASMessage(std::span<const uint8_t> message) {
    Reader reader(message);
    const auto commandId = static_cast<uint8_t>(reader.Number(1));
    const auto caSystemId = static_cast<uint16_t>(reader.Number(2));
    const uint32_t transactionId = reader.Number(4);
    const uint32_t count = reader.Number(1);

    std::vector<Item> items;
    for (uint32_t i = 0; i < count && !reader.Failed(); ++i) {
        const auto datatypeId = static_cast<uint8_t>(reader.Number(1));
        const auto bytes = reader.Bytes(reader.Number(2));
        items.push_back({datatypeId, {bytes.begin(), bytes.end()}});
    }
    if (!reader.AtEnd())
        return;

    m_valid = true;
    m_commandId = commandId;
    m_caSystemId = caSystemId;
    m_transactionId = transactionId;
    m_items = std::move(items);
}

const SASMessage::Item* SASMessage::Find(uint8_t datatypeId) const {
    const auto at = std::ranges::find(m_items, datatypeId, &Item::datatypeId);
    return at != m_items.end() ? &*at : nullptr;
}
