// A picture of the screen: the pixels of the window, as they are seen.
#pragma once

#include <string>

#include <gtk/gtk.h>

namespace Shell {

// Writes a PNG file. The reason of a failure, empty for success.
[[nodiscard]] std::string takeScreenshot(GtkWidget* window, const std::string& path);

}  // namespace Shell
