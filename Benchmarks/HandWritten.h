// The class `Few` as one would write it by hand on the bare JavaScriptCore C API, with the same checks: the
// yardstick for the generated binding.
#pragma once

#include <JavaScriptCore/JavaScript.h>

namespace Benchmarks {

[[nodiscard]] JSObjectRef CreateHandWritten(JSContextRef context);

}  // namespace Benchmarks
