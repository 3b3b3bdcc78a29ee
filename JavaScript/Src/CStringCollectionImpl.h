// An ordered list of strings, filled when it is made and never changed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "InjectedBundle/gen/js/CStringCollectionBase.h"

namespace OipfJavaScript {

class CStringCollectionImpl : public CStringCollectionBase {
 public:
    explicit CStringCollectionImpl(std::vector<std::string> strings) : m_strings(std::move(strings)) {}

    [[nodiscard]] uint32_t GetLength() const { return static_cast<uint32_t>(m_strings.size()); }
    // Undefined at or past the end.
    [[nodiscard]] std::string Item(uint32_t index);

 private:
    std::vector<std::string> m_strings;
};

}  // namespace OipfJavaScript
