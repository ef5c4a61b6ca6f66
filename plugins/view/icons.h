// Small drawings beside values.

#pragma once

#include "canvas.h"
#include "parameters.h"

namespace channelstrip::view {

// A triangle for a value that the strip can't have.
void draw_warning(Canvas& canvas, Point tip, double em);

// The knob stands at the right and the track is filled while it is on.
void draw_toggle(Canvas& canvas, Point left_middle, double em, bool is_on, Colour accent);

// The shape that a band has.
void draw_type_icon(Canvas& canvas, const Rect& box, BandType type, Colour colour, double em);

}  // namespace channelstrip::view
