// What both measured binding classes do; the generated binding looks for it under this path.
#pragma once

#include <cstdint>

#include "InjectedBundle/gen/js/CFewBase.h"

namespace OipfJavaScript {

class CFewImpl : public CFewBase {
 public:
    [[nodiscard]] int32_t GetValue() const { return m_value; }
    void SetValue(int32_t value) { m_value = value; }
    [[nodiscard]] int32_t Add(int32_t number) const { return m_value + number; }

 private:
    int32_t m_value = 1;
};

}  // namespace OipfJavaScript
