// Pictures in pixels, for uses that don't take SVG.

#pragma once

#include <string>
#include <string_view>

namespace channelstrip::host {

// Renders an SVG document as a PNG file, with `scale` pixels per unit of its width and height.
// Throws std::runtime_error if it can't be drawn.
std::string to_png(std::string_view svg, double scale);

}  // namespace channelstrip::host
