// Values by id, at most so many: a page may ask for more and more without ever giving anything back, and then
// the entry used longest ago makes room for a new one.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <random>
#include <utility>

namespace Receiver {

template <typename Value>
class BoundedStore {
 public:
    using IsInUse = std::function<bool(const Value&)>;
    using Dropped = std::function<void(std::uint32_t id, Value& value)>;

    // What is in use makes room only when everything is. `dropped` hears of each entry that is no more, but
    // not of one that was replaced.
    explicit BoundedStore(std::size_t limit, IsInUse isInUse = nullptr, Dropped dropped = nullptr)
        : m_limit(limit), m_isInUse(std::move(isInUse)), m_dropped(std::move(dropped)) {}

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
        if (isFull())
            dropOldest();
        auto& entry = m_entries[id];
        entry.value = std::make_unique<Value>(std::forward<Arguments>(arguments)...);
        entry.lastUse = ++m_uses;
        return *entry.value;
    }

    // The next id of a count that skips 0 and what is in use. It begins anywhere, so that an id of a receiver
    // that has ended means nothing to the next one, and stays where signed and unsigned numbers agree.
    [[nodiscard]] std::uint32_t nextId() {
        constexpr std::uint32_t last = 0x7FFFFFFF;
        if (m_lastId == 0)
            m_lastId = std::random_device()() & last;
        do {
            m_lastId = m_lastId >= last ? 1 : m_lastId + 1;
        } while (m_entries.contains(m_lastId));
        return m_lastId;
    }

    void erase(std::uint32_t id) { drop(m_entries.find(id)); }
    void clear() {
        while (!m_entries.empty())
            drop(m_entries.begin());
    }
    [[nodiscard]] std::size_t size() const { return m_entries.size(); }
    [[nodiscard]] bool isFull() const { return m_entries.size() >= m_limit; }

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
        const auto rank = [this](const auto& entry) {
            return std::make_pair(m_isInUse && m_isInUse(*entry.second.value), entry.second.lastUse);
        };
        drop(std::ranges::min_element(m_entries, {}, rank));
    }
    void drop(typename std::map<std::uint32_t, Entry>::iterator entry) {
        if (entry == m_entries.end())
            return;
        const auto dropped = m_entries.extract(entry);
        if (m_dropped)
            m_dropped(dropped.key(), *dropped.mapped().value);
    }

    const std::size_t m_limit;
    const IsInUse m_isInUse;
    const Dropped m_dropped;
    std::map<std::uint32_t, Entry> m_entries;
    std::uint64_t m_uses = 0;
    std::uint32_t m_lastId = 0;
};

}  // namespace Receiver
