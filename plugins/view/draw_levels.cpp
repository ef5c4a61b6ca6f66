// The dynamics' static curve: output over input level, with thresholds, and balls where the signal
// is on it.

#include <algorithm>
#include <cmath>

#include "parts.h"
#include "style.h"

namespace channelstrip::view {
namespace {

std::vector<Point> static_curve(const LevelPlot& plot, const Setup& setup,
                                const std::vector<double>& expander) {
  std::vector<Point> points;
  for (std::size_t i = 0; i < setup.levels.size(); ++i) {
    const double out = setup.levels[i] + setup.compressor[i] + expander[i];
    points.push_back({plot.x(setup.levels[i]), plot.y(std::max(out, plot.low - 200))});
  }
  return points;
}

struct Flag {
  double level;
  const char* name;
  Colour colour;
  bool is_dashed = false, is_at_top = false, is_left = false;
};

// A line across the plot, with a pointer at its end and a name beside it.
void draw_flag(Canvas& canvas, const Layout& layout, const Flag& flag) {
  const LevelPlot& plot = layout.levels;
  const double em = layout.em, x = canvas.snapped(plot.x(flag.level));
  if (x < plot.area.x || x > plot.area.right()) return;
  const Point ends[] = {{x, plot.area.y}, {x, plot.area.bottom()}};
  const double dashes[] = {0.3 * em, 0.25 * em};
  canvas.line(ends, flag.colour.with(0.8), 1.1,
              flag.is_dashed ? std::span<const double>(dashes) : std::span<const double>());
  const double edge = flag.is_at_top ? plot.area.y : plot.area.bottom();
  const double inward = flag.is_at_top ? 1 : -1;
  const Point pointer[] = {
      {x, edge + inward * 0.5 * em}, {x - 0.38 * em, edge}, {x + 0.38 * em, edge}};
  canvas.polygon(pointer, flag.colour);
}

void draw_flag_name(Canvas& canvas, const Layout& layout, const Flag& flag) {
  const LevelPlot& plot = layout.levels;
  const double em = layout.em, x = canvas.snapped(plot.x(flag.level));
  if (x < plot.area.x || x > plot.area.right()) return;
  const double edge = flag.is_at_top ? plot.area.y : plot.area.bottom();
  const double inward = flag.is_at_top ? 1 : -1;
  Type type = axis_type(layout, flag.is_left ? Align::kRight : Align::kLeft);
  type.colour = flag.colour;
  const double offset = flag.is_left ? -0.45 * em : 0.45 * em;
  const double baseline = edge + inward * 0.55 * em + (flag.is_at_top ? type.size * kCapHeight : 0);
  const double width = canvas.width_of(flag.name, type);
  canvas.fill({flag.is_left ? x + offset - width - 1 : x + offset - 1,
               baseline - type.size * kCapHeight - 2, width + 2, type.size * kCapHeight + 4},
              kPlot.with(0.8));
  canvas.text({x + offset, baseline}, flag.name, type);
}

void draw_knee(Canvas& canvas, const LevelPlot& plot, double threshold, double knee,
               Colour colour) {
  if (knee <= 0.1) return;
  const double left = plot.x(threshold - knee / 2), right = plot.x(threshold + knee / 2);
  canvas.fill({left, plot.area.y, right - left, plot.area.height}, colour.with(0.09));
}

std::vector<Flag> flags_of(const Layout& layout, const Setup& setup) {
  std::vector<Flag> flags;
  const Parameters& p = parameters();
  const auto& v = setup.values;
  const double middle = (layout.levels.low + layout.levels.high) / 2;
  if (setup.is_on(p.expander.on)) {
    const double threshold = v[p.expander.threshold];
    if (setup.is_gate()) {
      flags.push_back(
          {threshold - v[p.expander.hysteresis], "shut", kExpanderAccent, true, false, true});
      flags.push_back({threshold, "open", kExpanderAccent});
    } else {
      flags.push_back({threshold, "expand", kExpanderAccent, false, false, threshold > middle});
    }
  }
  if (setup.is_on(p.compressor.on)) {
    const double threshold = v[p.compressor.threshold];
    flags.push_back({threshold, "compress", kCompressorAccent, false, true, threshold > middle});
  }
  return flags;
}

// What the lines below, the history's, are.
void draw_history_legend(Canvas& canvas, const Layout& layout, const Setup& setup) {
  const double em = layout.em, y = layout.title.centre().y;
  const Type type = axis_type(layout, Align::kRight);
  double right = layout.levels.area.right();
  const auto add = [&](const char* name, Colour fill, Colour line, std::span<const double> dashes) {
    canvas.text({right, y + type.size * kCapHeight / 2}, name, type);
    right -= canvas.width_of(name, type) + 0.45 * em;
    const Rect box{right - 1.3 * em, y - 0.35 * em, 1.3 * em, 0.7 * em};
    canvas.fill(box, fill);
    const Point ends[] = {{box.x, box.bottom()}, {box.right(), box.bottom()}};
    canvas.line(ends, line, 1.4, dashes);
    right = box.x - 1.0 * em;
  };
  const double dashes[] = {0.3 * em, 0.2 * em};
  add(setup.is_on(parameters().expander.gate) ? "Gate" : "Expander", kExpanderAccent.with(0.2),
      kExpanderAccent, dashes);
  add(layout.is_small ? "Comp" : "Compressor", kCompressorAccent.with(0.45), kCompressorAccent, {});
  add("Level", rgb(0x5b6979).with(0.5), rgb(0x5b6979).with(0.5), {});
}

}  // namespace

void draw_levels_plot(Canvas& canvas, const Layout& layout, const Setup& setup) {
  const Parameters& p = parameters();
  const LevelPlot& plot = layout.levels;
  const Rect& area = plot.area;
  const double em = layout.em;
  const Type title = title_type(layout, kText);
  const Rect line{layout.columns[0].x, layout.title.y, 10 * em, layout.title.height};
  canvas.text({line.x, baseline_of(line, title.size)}, "DYNAMICS", title);
  draw_history_legend(canvas, layout, setup);
  canvas.fill_rounded(area.inset(-1, -1), 3, kPlot);
  const double step = area.height / (plot.high - plot.low) * 12 < 1.25 * em ? 24 : 12;
  const Type below = axis_type(layout, Align::kCentre), beside = axis_type(layout, Align::kRight);
  for (int n = 0; n * step >= plot.low; --n) {
    const double level = n * step, x = plot.x(level), y = plot.y(level);
    const std::string name = level == 0 ? "0" : fmt::format("\u2212{:g}", -level);
    if (level > plot.low) {
      canvas.vertical(x, area.y, area.bottom(), level == 0 ? kGridStrong : kGrid);
      canvas.horizontal(area.x, area.right(), y, level == 0 ? kGridStrong : kGrid);
    }
    canvas.text({x, area.bottom() + below.size * 1.35}, name, below);
    canvas.text({area.x - 0.55 * em, std::min(y + below.size * kCapHeight / 2, area.bottom())},
                name, beside);
  }

  canvas.text({area.right(), area.bottom() + below.size * 1.35}, "in",
              axis_type(layout, Align::kRight));
  canvas.text({area.x - 0.55 * em, area.y + beside.size * kCapHeight}, "out", beside);

  const Canvas::Clip clip(canvas, area);
  const auto& v = setup.values;
  if (setup.is_on(p.compressor.on)) {
    draw_knee(canvas, plot, v[p.compressor.threshold], v[p.compressor.knee], kCompressorAccent);
  }
  if (setup.is_on(p.expander.on)) {
    draw_knee(canvas, plot, v[p.expander.threshold], v[p.expander.knee], kExpanderAccent);
  }
  const double dots[] = {0.15 * em, 0.3 * em};
  const Point unity[] = {{plot.x(plot.low), plot.y(plot.low)},
                         {plot.x(plot.high), plot.y(plot.high)}};
  canvas.line(unity, kFaint.with(0.8), 1, dots);
  const bool is_on =
      (setup.is_on(p.compressor.on) || setup.is_on(p.expander.on)) && !setup.is_on(p.bypass);
  const std::vector<Flag> flags = flags_of(layout, setup);
  for (const Flag& flag : flags) draw_flag(canvas, layout, flag);
  if (setup.is_gate()) {
    const double dashes[] = {0.5 * em, 0.35 * em};
    canvas.line(static_curve(plot, setup, setup.expander_shut), kExpanderAccent.with(0.9),
                0.13 * em, dashes);
  }
  const auto points = static_curve(plot, setup, setup.expander_open);
  canvas.line(points, kPlot.with(0.7), 0.34 * em);
  canvas.line(points, is_on ? kText : kFaint, 0.18 * em);
  for (const Flag& flag : flags) draw_flag_name(canvas, layout, flag);
}

void draw_levels(Canvas& canvas, const Layout& layout, const Model& model) {
  if (!model.live.has_detector) return;
  const LevelPlot& plot = layout.levels;
  const Canvas::Clip clip(canvas, plot.area);
  const double em = layout.em;
  std::size_t loudest = 0;
  for (std::size_t c = 1; c < layout.channels; ++c) {
    if (model.live.dynamics[c].detector > model.live.dynamics[loudest].detector) loudest = c;
  }
  const auto place = [&](std::size_t channel) {
    const ChannelDynamics& d = model.live.dynamics[channel];
    const double level = static_cast<double>(d.detector);
    return Point{plot.x(level), plot.y(level + static_cast<double>(d.compressor + d.expander))};
  };
  for (std::size_t c = 0; c < layout.channels; ++c) {
    const Point ball = place(c);
    if (c != loudest && ball.x > plot.area.x) canvas.fill_circle(ball, 0.26 * em, kLabel.with(0.8));
  }
  const Point ball = place(loudest);
  if (ball.x <= plot.area.x) return;
  const Point fall[] = {{ball.x, plot.y(plot.level(ball.x))}, ball};
  canvas.line(fall, kText.with(0.45), 1);
  canvas.fill_circle(ball, 0.62 * em, kPlot.with(0.85));
  canvas.fill_circle(ball, 0.46 * em, rgb(0xffffff));
}

}  // namespace channelstrip::view
