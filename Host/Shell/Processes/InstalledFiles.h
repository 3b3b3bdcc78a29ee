// Where the other parts of the host are: beside this program in the build tree, or where they are installed.
#pragma once

#include <optional>
#include <string>

namespace Shell {

// The folder of the web-process adapter.
[[nodiscard]] std::optional<std::string> findAdapterFolder();

// HBBTV_BUNDLE as it is (empty: no bundle is wanted), else the bundle that belongs to this program.
[[nodiscard]] std::optional<std::string> findBundle();

// HBBTV_RECEIVER as it is, else the receiver that belongs to this program.
[[nodiscard]] std::optional<std::string> findReceiver();

// The scenario of a receiver for which none is named.
[[nodiscard]] std::optional<std::string> findDefaultScenario();
// The folder of the demo applications, which that scenario broadcasts.
[[nodiscard]] std::optional<std::string> findExamples();

// The folder of its channels' pictures.
[[nodiscard]] std::optional<std::string> findPictures();

}  // namespace Shell
