// Where on the screen a picture of the video plane lies. No toolkit is needed for it.
#pragma once

#include <cstdint>
#include <optional>

namespace Shell {

struct PlaneWindow {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool fullScreen = false;
};

struct Rectangle {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] bool operator==(const Rectangle&) const = default;
};

// The window on a screen of this size. A window that has been scrolled half away reaches beyond the screen;
// nothing for one of which nothing is to be seen.
[[nodiscard]] std::optional<Rectangle> windowOnScreen(const PlaneWindow& window, int screenWidth,
                                                      int screenHeight);

// The largest picture of 16:9 in the middle of the window; around it the window is black.
[[nodiscard]] Rectangle pictureIn(const Rectangle& window);

}  // namespace Shell
