// The picture that the simulated receiver "broadcasts".
#pragma once

#include <string>

#include <gtk/gtk.h>

#include "Host/Shell/PlaneLayout.h"

namespace Shell {

// Colour bars, grid and circle with the channel's name and the time of day, whose hand moves.
void drawTestCard(cairo_t* cairo, const Rectangle& picture, const std::string& channel);

}  // namespace Shell
