// Values by id, at most so many: where the bus gives no word of a client that went away without releasing
// what it held, the entry used longest ago makes room for a new one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <utility>

namespace Receiver {

template <typename Value>
class BoundedStore {
 public:
    using Dropped = std::function<void(std::uint32_t id)>;

    // Hears of each entry that has made room for another, when it is gone.
    explicit BoundedStore(std::size_t limit, Dropped dropped = nullptr)
        : m_limit(limit), m_dropped(std::move(dropped)) {}

    [[nodiscard]] Value* find(std::uint32_t id) {
        const auto found = m_entries.find(id);
        if (found == m_entries.end())
            return nullptr;
        found->second.lastUse = ++m_uses;
        return found->second.value.get();
    }

    // Replaces what the id stood for.
    template <typename... Arguments>
    Value& emplace(std::uint32_t id, Arguments&&... arguments) {
        m_entries.erase(id);
        if (m_entries.size() >= m_limit)
            dropOldest();
        auto& entry = m_entries[id];
        entry.value = std::make_unique<Value>(std::forward<Arguments>(arguments)...);
        entry.lastUse = ++m_uses;
        return *entry.value;
    }

    // The next id of a count that skips 0 and what is in use.
    [[nodiscard]] std::uint32_t nextId() {
        do {
            ++m_lastId;
        } while (m_lastId == 0 || m_entries.contains(m_lastId));
        return m_lastId;
    }

    void erase(std::uint32_t id) { m_entries.erase(id); }
    void clear() { m_entries.clear(); }
    [[nodiscard]] std::size_t size() const { return m_entries.size(); }

    template <typename Visit>
    void forEach(Visit visit) const {
        for (const auto& [id, entry] : m_entries)
            visit(id, *entry.value);
    }

 private:
    struct Entry {
        std::unique_ptr<Value> value;
        std::uint64_t lastUse = 0;
    };

    void dropOldest() {
        const auto oldest = std::min_element(
            m_entries.begin(), m_entries.end(),
            [](const auto& a, const auto& b) { return a.second.lastUse < b.second.lastUse; });
        const auto id = oldest->first;
        m_entries.erase(oldest);
        if (m_dropped)
            m_dropped(id);
    }

    const std::size_t m_limit;
    const Dropped m_dropped;
    std::map<std::uint32_t, Entry> m_entries;
    std::uint64_t m_uses = 0;
    std::uint32_t m_lastId = 0;
};

}  // namespace Receiver
