// What the receiver says of a player on the video plane, and where on the screen its picture lies. No toolkit
// is needed for it.
#pragma once

#include <compare>
#include <cstdint>
#include <optional>
#include <string>

namespace Shell {

struct PlaneWindow {
    std::uint32_t x = 0;
    std::uint32_t y = 0;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool fullScreen = false;
};

// Every web process counts the ids of its players from 1, for both kinds.
struct PlanePlayer {
    std::string kind;    // "broadcast" or "broadband"
    std::string caller;  // the web process's name on the bus
    std::uint32_t id = 0;

    [[nodiscard]] auto operator<=>(const PlanePlayer&) const = default;
};

enum class PlanePicture {
    None,    // black
    Card,    // a test card with the title
    Audio,   // there is only something to hear
    Frames,  // what the player decodes
};

struct PlaneContent {
    PlaneWindow window;
    std::string title;
    PlanePicture picture = PlanePicture::None;
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

// The largest picture of this form (16:9) in the middle of the window; around it the window is black.
[[nodiscard]] Rectangle pictureIn(const Rectangle& window, int formWidth = 16, int formHeight = 9);

}  // namespace Shell
