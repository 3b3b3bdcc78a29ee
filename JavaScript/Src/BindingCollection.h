// What the collections that pages see have in common: a fixed order, and look-ups that hand out copies, so
// that a page may keep an element when the collection is gone.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace OipfJavaScript {

template <class Base, class Binding>
class BindingCollection : public Base {
 public:
    explicit BindingCollection(std::vector<Binding> items = {}) : m_items(std::move(items)) {}

    [[nodiscard]] uint32_t GetLength() const { return static_cast<uint32_t>(m_items.size()); }
    // Undefined at or past the end.
    [[nodiscard]] std::unique_ptr<Binding> Item(uint32_t index) { return CopyOf(index); }

 protected:
    // A copy of the first element that the condition holds for; undefined when there is none.
    template <typename Condition>
    [[nodiscard]] std::unique_ptr<Binding> First(Condition holds) {
        size_t index = 0;
        while (index < m_items.size() && !holds(m_items[index].Implementation()))
            ++index;
        return CopyOf(index);
    }

    std::vector<Binding> m_items;

 private:
    std::unique_ptr<Binding> CopyOf(size_t index) {
        if (index < m_items.size())
            return std::make_unique<Binding>(m_items[index]);
        this->m_status = Base::kUndefined;
        return nullptr;
    }
};

}  // namespace OipfJavaScript
