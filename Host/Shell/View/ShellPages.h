// The pages that the shell shows on its own account.
#pragma once

#include <string>

namespace Shell {

// The words for a missing file of the object carousel.
inline constexpr char kNoSuchFile[] = "The object carousel has no such file.";

// For a load that failed; readable at three metres.
[[nodiscard]] std::string errorPage(const std::string& url, const std::string& reason);

// For a screen that no application uses.
[[nodiscard]] std::string plainPage(const std::string& heading, const std::string& text);

}  // namespace Shell
