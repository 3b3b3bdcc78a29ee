// The pictures of players that decode nothing.
#pragma once

#include <string>

#include <gtk/gtk.h>

#include "Host/Shell/PlaneLayout.h"

namespace Shell {

// Colour bars, grid and circle with the title and the time of day, whose hand moves.
void drawTestCard(cairo_t* cairo, const Rectangle& picture, const std::string& title);

// For media without a picture: the title on a plain ground.
void drawAudioCard(cairo_t* cairo, const Rectangle& picture, const std::string& title);

}  // namespace Shell
