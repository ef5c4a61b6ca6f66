// Pictures for where SVG can't go.

#pragma once

#include <string>
#include <string_view>

namespace channelstrip::host {

// The SVG document in pixels, `scale` for each unit of its width and height, as a PNG file. Throws
// std::runtime_error when it can't be drawn.
std::string to_png(std::string_view svg, double scale);

}  // namespace channelstrip::host
