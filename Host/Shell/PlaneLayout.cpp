#include "Host/Shell/PlaneLayout.h"

#include <algorithm>

namespace Shell {

namespace {

// Far more than any page asks for in earnest, and little enough for every sum and for cairo.
constexpr std::int32_t kLargest = 16384;

}  // namespace

std::optional<Rectangle> windowOnScreen(const PlaneWindow& window, int screenWidth, int screenHeight) {
    if (window.fullScreen)
        return Rectangle{0, 0, screenWidth, screenHeight};
    // Pages scroll windows to places left of and above the screen; the wire has no sign for them.
    const auto x = static_cast<std::int32_t>(window.x);
    const auto y = static_cast<std::int32_t>(window.y);
    const auto width = static_cast<std::int32_t>(window.width);
    const auto height = static_cast<std::int32_t>(window.height);
    if (width <= 0 || height <= 0 || width > kLargest || height > kLargest)
        return std::nullopt;
    if (x >= screenWidth || y >= screenHeight || x <= -width || y <= -height)
        return std::nullopt;
    return Rectangle{x, y, width, height};
}

Rectangle pictureIn(const Rectangle& window, int formWidth, int formHeight) {
    const int width = std::min(window.width, window.height * formWidth / formHeight);
    const int height = std::min(window.height, window.width * formHeight / formWidth);
    return {window.x + (window.width - width) / 2, window.y + (window.height - height) / 2, width, height};
}

}  // namespace Shell
