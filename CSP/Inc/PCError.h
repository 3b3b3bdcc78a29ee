// The calling thread's error number.
#pragma once

#include <cerrno>

namespace HbbTVPlatform {

class PCError {
 public:
    static void Set(int code) { errno = code; }
    [[nodiscard]] static int Num() { return errno; }
};

}  // namespace HbbTVPlatform
