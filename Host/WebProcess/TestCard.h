// The pictures of players that decode nothing. They fill a surface of this size.
#pragma once

#include <string>

#include <cairo/cairo.h>

namespace WebProcess {

inline constexpr int kCardWidth = 1280;
inline constexpr int kCardHeight = 720;

// Colour bars, grid and circle with the title and the time of day, whose hand moves.
void drawTestCard(cairo_t* cairo, const std::string& title);

// For media without a picture: the title on a plain ground.
void drawAudioCard(cairo_t* cairo, const std::string& title);

}  // namespace WebProcess
