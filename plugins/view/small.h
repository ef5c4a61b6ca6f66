// A strip at the size of a stamp, for a mixer: the equaliser's curve, and what the dynamics take
// away.

#pragma once

#include <cairo.h>

#include "canvas.h"
#include "model.h"

namespace channelstrip::view {

// Reductions in dB, 0 and above. Without any text.
void draw_small(cairo_t* context, const Fonts& fonts, const Setup& setup, double compressor,
                double expander, Size size);

}  // namespace channelstrip::view
