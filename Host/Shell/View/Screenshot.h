// A picture of the screen: the pixels of the window, as they are seen. Wayland gives nobody those, so there
// the window is drawn once more.
#pragma once

#include <string>

#include <gtk/gtk.h>

namespace Shell {

// Writes a PNG file. The reason of a failure, empty for success.
[[nodiscard]] std::string takeScreenshot(GtkWidget* screen, const std::string& path);

}  // namespace Shell
