// The last seconds: the input's level from below, what compressor and expander take away from
// above, all on one scale.

#include "parts.h"
#include "style.h"

namespace channelstrip::view {

void draw_history_plot(Canvas& canvas, const Layout& layout, const Setup& setup) {
  const HistoryPlot& plot = layout.history;
  const Rect& area = plot.area;
  const double em = layout.em;
  canvas.fill_rounded(area.inset(-1, -1), 3, kPlot);
  const Type beside = axis_type(layout, Align::kRight), below = axis_type(layout, Align::kCentre);
  const double step = area.height > 7.5 * em ? 12 : area.height > 4.5 * em ? 20 : 30;
  for (int line = 0; line * step >= HistoryPlot::kLow; --line) {
    const double level = line * step, y = plot.y(level);
    if (level < 0 && level > HistoryPlot::kLow) canvas.horizontal(area.x, area.right(), y, kGrid);
    canvas.text({area.x - 0.55 * em, std::clamp(y + below.size * kCapHeight / 2,
                                                area.y + below.size * kCapHeight, area.bottom())},
                level == 0 ? "0" : fmt::format("\u2212{:g}", -level), beside);
  }
  const Parameters& p = parameters();
  const auto mark = [&](std::size_t on, std::size_t threshold, Colour accent) {
    const double level = setup.values[threshold];
    if (!setup.is_on(on) || level <= HistoryPlot::kLow || level >= 0) return;
    canvas.horizontal(area.x, area.right(), plot.y(level), accent.with(0.5));
  };
  // With a key the dynamics don't follow the level that is shown.
  if (!setup.is_on(p.key.enable)) {
    mark(p.compressor.on, p.compressor.threshold, kCompressorAccent);
    mark(p.expander.on, p.expander.threshold, kExpanderAccent);
  }
  for (int seconds = 0; seconds <= static_cast<int>(kHistorySeconds); ++seconds) {
    const double x = plot.x(seconds);
    if (seconds > 0 && seconds < kHistorySeconds) canvas.vertical(x, area.y, area.bottom(), kGrid);
    Type type = below;
    if (seconds == 0) type.align = Align::kRight;
    if (seconds == static_cast<int>(kHistorySeconds)) type.align = Align::kLeft;
    canvas.text({x, area.bottom() + below.size * 1.3},
                seconds == 0 ? "now" : fmt::format("\u2212{} s", seconds), type);
  }
}

void draw_history(Canvas& canvas, const Layout& layout, const Model& model) {
  const HistoryPlot& plot = layout.history;
  const std::vector<Moment>& history = model.live.history;
  const std::size_t count = std::min(history.size(), kHistoryMoments);
  if (count < 2) return;
  const double em = layout.em;
  const Canvas::Clip clip(canvas, plot.area);
  std::array<Point, kHistoryMoments> points;
  const auto trace = [&](auto value) {
    for (std::size_t i = 0; i < count; ++i) {
      const double ago =
          static_cast<double>(count - 1 - i) / (kHistoryMoments - 1) * kHistorySeconds;
      points[i] = {plot.x(ago),
                   plot.y(static_cast<double>(value(history[history.size() - count + i])))};
    }
    return std::span<const Point>(points.data(), count);
  };
  const auto input = trace([](const Moment& m) { return m.input; });
  canvas.area(input, plot.area.bottom() + 1, rgb(0x5b6979).with(0.5));
  canvas.line(input, rgb(0x8b98a7), 1);

  const Parameters& p = parameters();
  if (model.setup.is_on(p.expander.on)) {
    const auto expander = trace([](const Moment& m) { return m.expander; });
    const double dashes[] = {0.3 * em, 0.2 * em};
    canvas.area(expander, plot.area.y - 2, kExpanderAccent.with(0.2));
    canvas.line(expander, kExpanderAccent, 0.11 * em, dashes);
  }

  if (model.setup.is_on(p.compressor.on)) {
    const auto compressor = trace([](const Moment& m) { return m.compressor; });
    canvas.area(compressor, plot.area.y - 2, kCompressorAccent.with(0.45));
    canvas.line(compressor, kCompressorAccent, 0.13 * em);
  }
}

}  // namespace channelstrip::view
