// What each fuzzing program defines, for libFuzzer and for Replay.cpp alike, and how it fails.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);

// Of the whole run, which has met what it is there for. Asked by the ordinary tests alone.
void RequireEnoughWasMet();

// A trap, which every sanitizer and test runner sees.
inline void Require(bool holds) {
    if (!holds)
        std::abort();
}
