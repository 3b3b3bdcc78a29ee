// Why a command is not done.
#pragma once

#include <stdexcept>

namespace Control {

// The television did not do it: exit code 1.
class Failure : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

// It was not asked rightly: exit code 2.
class Misuse : public std::runtime_error {
 public:
    using std::runtime_error::runtime_error;
};

}  // namespace Control
