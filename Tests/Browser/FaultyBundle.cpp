// A bundle that does what a sanitizer reports as soon as a web process opens it: what HBBTV_FAULT names.
#include <cstdlib>
#include <limits>
#include <string_view>

#include "Platform/Inc/WKBundle.h"

namespace {

// Volatile: the compiler must neither see it coming nor leave it out.
volatile int s_one = 1;
volatile int s_most = std::numeric_limits<int>::max();
volatile int s_result;

}  // namespace

void WKBundleInitialize(WKBundleRef, WKTypeRef) {
    const std::string_view fault = std::getenv("HBBTV_FAULT");
    const char* memory = new char[s_one]{};
    if (fault == "heap-buffer-overflow")
        s_result = memory[s_one];
    if (fault == "signed integer overflow")
        s_result = s_most + s_one;
    delete[] memory;
    if (fault == "heap-use-after-free")
        s_result = memory[s_one - 1];
}
