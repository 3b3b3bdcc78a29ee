// The bytes of an "ay".
#pragma once

#include <cstdint>
#include <span>

#include <gio/gio.h>

// They belong to the variant. Any length, zero included; NULs are bytes like any other.
[[nodiscard]] inline std::span<const uint8_t> BytesOf(GVariant* array) {
    gsize count = 0;
    const auto* bytes =
        static_cast<const uint8_t*>(g_variant_get_fixed_array(array, &count, sizeof(uint8_t)));
    return {bytes, count};
}
