// The world's lists as the GVariants of the wire; each result is floating.
#pragma once

#include <cstdint>
#include <vector>

#include <gio/gio.h>

#include "Host/Receiver/World/MetadataSearch.h"
#include "Host/Receiver/World/Scenario.h"
#include "Host/Receiver/World/Schedule.h"

namespace Receiver {

[[nodiscard]] GVariant* variantOf(const std::vector<std::uint32_t>& numbers);            // au
[[nodiscard]] GVariant* variantOf(const std::vector<std::uint8_t>& bytes);               // ay
[[nodiscard]] GVariant* variantOf(const std::vector<std::vector<std::uint8_t>>& lists);  // aay
[[nodiscard]] GVariant* variantOf(const std::vector<Component>& components);             // a(isbnqysbi)
[[nodiscard]] GVariant* variantOf(const std::vector<ScheduledProgramme>& programmes);    // a(ssuuyis)

[[nodiscard]] GVariant* variantOf(const OrderBy& orderBy);  // a(ub)

}  // namespace Receiver
