#include "small.h"

#include <algorithm>
#include <cmath>

#include "plots.h"

namespace channelstrip::view {
namespace {

constexpr double kRange = 18, kWholeBar = 24;  // dB

std::vector<Point> curve(const EqPlot& plot, const Setup& setup) {
  std::vector<Point> points(setup.sum.size());
  for (std::size_t i = 0; i < points.size(); ++i) {
    const double gain = std::clamp(setup.sum[i], -2 * kRange, 2 * kRange);
    points[i] = {plot.x(setup.frequencies[i]), plot.y(gain)};
  }
  return points;
}

// Hangs from above; a filled bar for the compressor, a hatched one for the expander.
void draw_reduction(Canvas& canvas, const Rect& track, double reduction, Colour colour,
                    bool is_hatched) {
  canvas.fill(track, kField);
  const double share = std::clamp(reduction / kWholeBar, 0.0, 1.0);
  Rect bar = track;
  bar.height = std::round(share * track.height);
  if (!is_hatched) {
    canvas.fill(bar, colour);
    return;
  }
  for (int line = 0; 2 * line < bar.height; ++line) {
    canvas.fill({bar.x, bar.y + 2 * line, bar.width, 1}, colour);
  }
}

}  // namespace

void draw_small(cairo_t* context, const Fonts& fonts, const Setup& setup, double compressor,
                double expander, Size size) {
  Canvas canvas(context, fonts, 1);
  const Parameters& p = parameters();
  Rect rest{0, 0, size.width, size.height};
  canvas.fill(rest, kPlot);
  const double gap = size.width < 60 ? 1 : 2;
  rest = rest.inset(gap, gap);
  const double width = std::clamp(std::round(size.width / 40), 2.0, 6.0);
  const auto add = [&](std::size_t on, double reduction, Colour colour, bool is_hatched) {
    if (!setup.is_on(on)) return;
    draw_reduction(canvas, rest.cut_right(width), reduction, colour, is_hatched);
    rest.cut_right(gap);
  };
  add(p.expander.on, expander, kExpanderAccent, true);
  add(p.compressor.on, compressor, kCompressorAccent, false);

  const EqPlot plot{.area = rest, .range = kRange};
  const bool is_bypassed = setup.is_on(p.bypass);
  const Canvas::Clip clip(canvas, rest);
  for (const double frequency : {100.0, 1000.0, 10000.0}) {
    canvas.vertical(plot.x(frequency), rest.y, rest.bottom(), kGrid);
  }
  canvas.horizontal(rest.x, rest.right(), plot.y(0), kGridStrong);
  const auto points = curve(plot, setup);
  if (is_bypassed) {
    const double dashes[] = {3, 2};
    canvas.line(points, kFaint, 1.2, dashes);
    return;
  }
  canvas.area(points, plot.y(0), kEqualiserAccent.with(0.25));
  canvas.line(points, mixed(kEqualiserAccent, rgb(0xffffff), 0.4), size.height < 40 ? 1.2 : 1.6);
}

}  // namespace channelstrip::view
