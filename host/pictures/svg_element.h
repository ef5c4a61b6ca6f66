// SVG's elements, written the same way every time.

#pragma once

#include <span>
#include <string>
#include <string_view>

#include "chart.h"

namespace channelstrip::host {

// Px that a character of 14 px text is taken to be wide, a little more than most are.
inline constexpr double kCharacter = 7.9;

// Rounded to 0.01, which no screen shows, in its shortest form; never -0.
std::string coordinate(double value);

// The commands of a line through `points`.
std::string line_through(std::span<const Point> points);

std::string path(std::string_view css_class, std::string_view commands);

enum class Anchor { kStart, kMiddle, kEnd };

// `more` are further attributes, each with a blank before it.
std::string text(double x, double y, Anchor anchor, std::string_view content,
                 std::string_view more = "");

// A line's or an area's CSS class.
std::string css_class(const Series& series);

}  // namespace channelstrip::host
