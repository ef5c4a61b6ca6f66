#include "icons.h"

#include <array>
#include <cmath>

namespace channelstrip::view {

void draw_warning(Canvas& canvas, Point tip, double em) {
  const Point triangle[] = {
      tip, {tip.x - 0.42 * em, tip.y + 0.74 * em}, {tip.x + 0.42 * em, tip.y + 0.74 * em}};
  canvas.polygon(triangle, kWarning);
  canvas.vertical(tip.x, tip.y + 0.3 * em, tip.y + 0.62 * em, kGround);
}

void draw_toggle(Canvas& canvas, Point left_middle, double em, bool is_on, Colour accent) {
  const double height = std::round(0.82 * em), width = std::round(1.5 * em);
  const Rect track{left_middle.x, left_middle.y - height / 2, width, height};
  const double r = height / 2;
  if (is_on) {
    canvas.fill_rounded(track, r, accent);
    canvas.fill_circle({track.right() - r, left_middle.y}, r - 1.5, kGround);
  } else {
    canvas.outline_rounded(track, r, kUnused, 1.2);
    canvas.fill_circle({track.x + r, left_middle.y}, r - 2.8, kFaint);
  }
}

void draw_type_icon(Canvas& canvas, const Rect& box, BandType type, Colour colour, double em) {
  const auto at = [&](double x, double y) {
    return Point{box.x + x * box.width, box.y + (1 - y) * box.height};
  };
  std::array<Point, 25> points;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double x = static_cast<double>(i) / (points.size() - 1), d = (x - 0.5) * 6;
    const double step = 1 / (1 + std::exp(2.2 * d)), bell = std::exp(-d * d / 1.2);
    double y = 0.5;
    switch (type) {
      case BandType::kPeak:
        y = 0.3 + 0.6 * bell;
        break;
      case BandType::kLowShelf:
        y = 0.3 + 0.5 * step;
        break;
      case BandType::kHighShelf:
        y = 0.8 - 0.5 * step;
        break;
      case BandType::kLowPass:
        y = 0.75 - 0.75 * std::pow(x, 3.5);
        break;
      case BandType::kHighPass:
        y = 0.75 - 0.75 * std::pow(1 - x, 3.5);
        break;
      case BandType::kBandPass:
        y = 0.1 + 0.8 * std::exp(-d * d / 2.5);
        break;
      case BandType::kNotch:
        y = 0.8 - 0.75 * std::exp(-d * d / 0.5);
        break;
      case BandType::kAllPass:
        y = 0.5 + 0.28 * std::sin(d * 1.05);
        break;
      case BandType::kTilt:
        y = 0.2 + 0.6 * x;
        break;
    }
    points[i] = at(x, y);
  }
  canvas.line(points, colour, 0.12 * em);
}

}  // namespace channelstrip::view
