// The equaliser: gains over frequency, the bands' handles, and spectra behind them.

#include <algorithm>
#include <cmath>

#include "parts.h"
#include "style.h"

namespace channelstrip::view {
namespace {

struct Line {
  double frequency;
  const char* name;  // null: a faint line without one
};
constexpr double kNothing = 0.04;  // dB: where a band's curve isn't drawn

constexpr Line kLines[] = {{20, "20"},      {30, nullptr},   {40, nullptr},   {50, "50"},
                           {70, nullptr},   {100, "100"},    {200, "200"},    {300, nullptr},
                           {400, nullptr},  {500, "500"},    {700, nullptr},  {1000, "1k"},
                           {2000, "2k"},    {3000, nullptr}, {4000, nullptr}, {5000, "5k"},
                           {7000, nullptr}, {10000, "10k"},  {20000, "20k"}};

std::vector<Point> curve(const EqPlot& plot, const Setup& setup, const std::vector<double>& gains) {
  std::vector<Point> points(gains.size());
  for (std::size_t i = 0; i < gains.size(); ++i) {
    // Far outside is as good as infinitely far, and safe for cairo's coordinates.
    const double gain = std::clamp(gains[i], -3 * plot.range, 3 * plot.range);
    points[i] = {plot.x(setup.frequencies[i]), plot.y(gain)};
  }
  return points;
}

int sections_used(const Setup& setup) {
  int sections = 0;
  for (const BandParameters& band : parameters().bands) {
    if (!setup.is_on(band.on)) continue;
    const int slope = static_cast<int>(setup.values[band.slope]);
    sections += use_of(band, setup.values).slope ? (slope + 11) / 12 : 1;
  }
  return sections;
}

void draw_legend(Canvas& canvas, const Layout& layout, const Setup& setup) {
  const double em = layout.em, y = layout.title.centre().y;
  Type type = axis_type(layout, Align::kRight);
  double right = layout.eq.area.right();
  const auto add = [&](const char* name, auto sample) {
    canvas.text({right, y + type.size * kCapHeight / 2}, name, type);
    right -= canvas.width_of(name, type) + 0.5 * em;
    sample(Rect{right - 1.4 * em, y - 0.35 * em, 1.4 * em, 0.7 * em});
    right -= 2.4 * em;
  };
  add("Output", [&](const Rect& box) {
    const Point ends[] = {{box.x, box.centre().y}, {box.right(), box.centre().y}};
    canvas.line(ends, rgb(0xc8d2dc), 1.4);
  });
  if (setup.is_on(parameters().key_filter.on)) {
    add("Key filter", [&](const Rect& box) {
      const Point ends[] = {{box.x, box.centre().y}, {box.right(), box.centre().y}};
      canvas.line(ends, kKeyAccent, 1.4, std::array{0.3 * em, 0.25 * em});
    });
  }
  add("Input", [&](const Rect& box) { canvas.fill(box, rgb(0x3c4652)); });
}

// A circle for a band before the dynamics, a square for one after them.
void draw_handle(Canvas& canvas, const Layout& layout, const Setup& setup, std::size_t b) {
  const BandParameters& band = parameters().bands[b];
  const Point centre = layout.handles[b];
  const bool is_left_out = setup.left_out[b], is_post = setup.values[band.position] != 0;
  const bool is_on = setup.is_on(band.on) && !is_left_out;
  const double r = setup.is_on(band.on) ? layout.handle_radius : 0.85 * layout.handle_radius;
  const Colour colour = kBandColours[b];
  const Rect box{centre.x - 0.9 * r, centre.y - 0.9 * r, 1.8 * r, 1.8 * r};
  if (is_on) {
    if (is_post) {
      canvas.fill_rounded(box.inset(-1.6, -1.6), 0.45 * r, kPlot);
      canvas.fill_rounded(box, 0.35 * r, colour);
    } else {
      canvas.fill_circle(centre, r + 1.6, kPlot);
      canvas.fill_circle(centre, r, colour);
    }
  } else {
    canvas.fill_circle(centre, r, kPlot.with(0.8));
    canvas.outline_circle(centre, r, is_left_out ? kWarning : kUnused, 1.2);
  }
  const Type type{.size = 0.95 * r + 0.1 * layout.em,
                  .weight = Weight::kSemiBold,
                  .colour = is_left_out ? kWarning
                            : is_on     ? kGround
                                        : kFaint,
                  .align = Align::kCentre};
  canvas.text({centre.x, centre.y + type.size * kCapHeight / 2}, std::to_string(b + 1), type);
}

}  // namespace

void draw_equaliser_plot(Canvas& canvas, const Layout& layout, const Setup& setup) {
  const EqPlot& plot = layout.eq;
  const Rect& area = plot.area;
  const double em = layout.em;
  const Type title = title_type(layout, kEqualiserAccent);
  canvas.text({layout.title.x, baseline_of(layout.title, title.size)}, "EQUALISER", title);
  draw_legend(canvas, layout, setup);

  canvas.fill_rounded(area.inset(-1, -1), 3, kPlot);
  const Type axis = axis_type(layout, Align::kCentre);
  for (const Line& line : kLines) {
    const double x = plot.x(line.frequency);
    canvas.vertical(x, area.y, area.bottom(), line.name ? kGrid : kGrid.with(0.45));
    if (line.name) canvas.text({x, area.bottom() + axis.size * 1.35}, line.name, axis);
  }
  const int lines = area.height > 9 * em ? 4 : 2;  // above and below 0 dB
  const Type gains = axis_type(layout, Align::kRight), levels = axis_type(layout, Align::kLeft);
  for (int line = -lines; line <= lines; ++line) {
    const double gain = plot.range * line / lines, y = plot.y(gain);
    const bool is_edge = std::abs(line) == lines;
    if (!is_edge) canvas.horizontal(area.x, area.right(), y, gain == 0 ? kGridStrong : kGrid);
    const double label =
        std::clamp(y + axis.size * kCapHeight / 2, area.y + axis.size * kCapHeight, area.bottom());
    const std::string number = fmt::format("{:g}", std::abs(gain));
    canvas.text({area.x - 0.55 * em, label}, gain == 0 ? "0" : (gain > 0 ? "+" : "\u2212") + number,
                gains);
  }
  for (int line = 0; line >= static_cast<int>(EqPlot::kSpectrumLow) / 24; --line) {
    const double level = 24.0 * line, y = plot.spectrum_y(level);
    const double label =
        std::clamp(y + axis.size * kCapHeight / 2, area.y + axis.size * kCapHeight, area.bottom());
    canvas.text({area.right() + 0.5 * em, label},
                level == 0 ? "0" : fmt::format("\u2212{:g}", -level), levels);
  }
  const int sections = sections_used(setup);
  canvas.text({layout.footer.x, baseline_of(layout.footer, em)},
              fmt::format("{} of 8 sections", sections),
              label_type(layout, sections > 8 ? kWarning : kFaint));
}

void draw_spectra(Canvas& canvas, const Layout& layout, const Model& model) {
  if (!model.live.has_spectrum) return;
  const EqPlot& plot = layout.eq;
  const Canvas::Clip clip(canvas, plot.area);
  const auto points = [&](const Spectrum& spectrum) {
    std::array<Point, kSpectrumPoints> all;
    for (std::size_t i = 0; i < all.size(); ++i) {
      const double position = static_cast<double>(i) / (kSpectrumPoints - 1);
      all[i] = {plot.area.x + plot.area.width * position,
                plot.spectrum_y(static_cast<double>(spectrum[i]))};
    }
    return all;
  };
  const auto input = points(model.live.input_spectrum), output = points(model.live.output_spectrum);
  canvas.area(input, plot.area.bottom() + 1, rgb(0x5b6979).with(0.34));
  canvas.line(output, rgb(0xc8d2dc).with(0.75), 1.1);
}

void draw_equaliser_curves(Canvas& canvas, const Layout& layout, const Setup& setup) {
  const EqPlot& plot = layout.eq;
  const double em = layout.em, zero = plot.y(0);
  const bool is_bypassed = setup.is_on(parameters().bypass);
  {
    const Canvas::Clip clip(canvas, plot.area);
    for (std::size_t b = 0; b < kBands; ++b) {
      if (setup.bands[b].empty()) continue;
      auto points = curve(plot, setup, setup.bands[b]);
      for (std::size_t i = 0; i < points.size(); ++i) {
        if (std::abs(setup.bands[b][i]) < kNothing) points[i].y = std::nan("");
      }
      const Colour colour = is_bypassed ? kFaint : kBandColours[b];
      canvas.area(points, zero, colour.with(0.09));
      canvas.line(points, colour.with(0.55), 0.085 * em);
    }
    if (!setup.key_filter.empty()) {
      canvas.line(curve(plot, setup, setup.key_filter), kKeyAccent.with(0.7), 0.1 * em,
                  std::array{0.3 * em, 0.25 * em});
    }
    const auto points = curve(plot, setup, setup.sum);
    const Colour accent = is_bypassed ? kFaint : kEqualiserAccent;
    canvas.area(points, zero, accent.with(0.16));
    canvas.line(points, kPlot.with(0.7), 0.34 * em);
    if (is_bypassed) {
      const double dashes[] = {0.5 * em, 0.35 * em};
      canvas.line(points, kLabel, 0.16 * em, dashes);
    } else {
      canvas.line(points, mixed(accent, rgb(0xffffff), 0.55), 0.18 * em);
    }
  }
  for (std::size_t b = kBands; b-- > 0;) draw_handle(canvas, layout, setup, b);
}

}  // namespace channelstrip::view
