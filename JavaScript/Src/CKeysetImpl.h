// The remote-control key groups that the application receives, as the receiver holds them.
#pragma once

#include <cstdint>

#include "InjectedBundle/gen/js/CKeysetBase.h"

namespace OipfJavaScript {

class CKeysetImpl : public CKeysetBase {
 public:
    [[nodiscard]] uint32_t GetValue() const;
    [[nodiscard]] uint32_t GetMaximumValue() const;
    // Asks for a mask; the result is the mask in force afterwards, which the receiver may have limited.
    [[nodiscard]] uint32_t SetValue(int32_t value);
};

}  // namespace OipfJavaScript
