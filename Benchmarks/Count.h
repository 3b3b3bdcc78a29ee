// How many of what a case measures there are: HBBTV_BENCHMARK_COUNT, for the curves of how cost grows, or the
// case's own number.
#pragma once

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace Benchmarks {

[[nodiscard]] inline uint32_t Count(uint32_t usual) {
    const char* const text = std::getenv("HBBTV_BENCHMARK_COUNT");
    if (text == nullptr)
        return usual;
    const auto count = static_cast<uint32_t>(std::strtoul(text, nullptr, 10));
    if (count == 0) {
        std::fputs("HBBTV_BENCHMARK_COUNT is no number of things\n", stderr);
        std::exit(2);
    }
    return count;
}

}  // namespace Benchmarks
