// What the system needs of threads.
#pragma once

#include <cerrno>
#include <ctime>

namespace HbbTVPlatform {

class PCThread {
 public:
    // Sleeps for the whole time, signals or not.
    static void Sleep(unsigned milliseconds) {
        timespec left{static_cast<time_t>(milliseconds / 1000),
                      static_cast<long>(milliseconds % 1000) * 1000000};
        while (nanosleep(&left, &left) != 0 && errno == EINTR) {
        }
    }
};

}  // namespace HbbTVPlatform
