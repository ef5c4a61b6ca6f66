#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <stdexcept>

#include "chart.h"
#include "clip.h"
#include "legend.h"
#include "svg_element.h"
#include "ticks.h"
#include "xml.h"

namespace channelstrip::host {
namespace {

// Room around a plot and between its parts, in px.
constexpr double kLeft = 52, kRight = 18;
constexpr double kTitle = 30, kGap = 8;
constexpr double kLabel = 20;                        // an axis' label
constexpr double kTickLabels = 28;                   // below the plot
constexpr double kTickWidth = 48, kTickHeight = 26;  // at least, between tick labels
constexpr double kFrequencyWidth = 32;               // likewise, of a logarithmic axis
constexpr double kUpright = 20;                      // text that runs upwards

void check(const Axis& axis) {
  const bool holds = std::isfinite(axis.low) && std::isfinite(axis.high) && axis.low < axis.high &&
                     (axis.scale != Scale::kLogarithmic || axis.low > 0);
  if (!holds) {
    throw std::invalid_argument(
        fmt::format("axis \"{}\" can't reach from {} to {}", axis.label, axis.low, axis.high));
  }
}

// 0 at the axis' low end, 1 at its high end.
double position(const Axis& axis, double value) {
  return axis.scale == Scale::kLogarithmic
             ? std::log(value / axis.low) / std::log(axis.high / axis.low)
             : (value - axis.low) / (axis.high - axis.low);
}

std::string title(std::string_view content) {
  return text(kGap, 20, Anchor::kStart, content, " class=\"title\"");
}

std::string paper(Size size) {
  return fmt::format("<rect class=\"paper\" width=\"{}\" height=\"{}\"/>\n", coordinate(size.width),
                     coordinate(size.height));
}

std::string box(Size size) {
  return fmt::format("viewBox=\"0 0 {} {}\"", coordinate(size.width), coordinate(size.height));
}

Legend legend_of(const Chart& chart, double width) {
  return legend(chart.series, kGap, width - kGap, kTitle);
}

std::string line_between(const Point& a, const Point& b) {
  return line_through(std::array{a, b});
}

// Of the line at `x`; NaN beside its ends.
double value_at(const Series& series, double x) {
  const auto after = std::ranges::lower_bound(series.points, x, {}, &Point::x);
  if (after == series.points.end()) return std::numeric_limits<double>::quiet_NaN();
  if (after->x == x) return after->y;
  if (after == series.points.begin()) return std::numeric_limits<double>::quiet_NaN();
  const Point& before = *std::prev(after);
  return std::lerp(before.y, after->y, (x - before.x) / (after->x - before.x));
}

class Drawing {
 public:
  Drawing(const Chart& chart, Size size) : chart_(chart) {
    check(chart.x);
    check(chart.y);
    for (const Series& series : chart.series) {
      if (!series.lower.empty() && series.lower.size() != series.points.size()) {
        throw std::invalid_argument(fmt::format("series \"{}\" has {} points and {} lower values",
                                                series.label, series.points.size(),
                                                series.lower.size()));
      }
    }
    const Legend names = legend_of(chart, size.width);
    plot_ = {.left = kLeft,
             .top = kTitle + names.rows * kLegendRow + kGap + (chart.y.label.empty() ? 0 : kLabel),
             .right = size.width - kRight,
             .bottom = size.height - kTickLabels - (chart.x.label.empty() ? 0 : kLabel)};
    out_ = paper(size) + title(chart.title) + names.elements;
    draw_axes();
    for (const Series& series : chart.series) draw(series);
    draw_marks();
  }

  const std::string& elements() const { return out_; }

 private:
  double x(double value) const {
    return plot_.left + position(chart_.x, value) * (plot_.right - plot_.left);
  }
  double y(double value) const {
    return plot_.bottom - position(chart_.y, value) * (plot_.bottom - plot_.top);
  }
  Point place(const Point& point) const { return {x(point.x), y(point.y)}; }

  void draw_axes() {
    std::string grid, labels;
    const auto [left, top, right, bottom] = plot_;
    const double tick_width = chart_.x.scale == Scale::kLogarithmic ? kFrequencyWidth : kTickWidth;
    for (const Tick& tick : ticks(chart_.x, static_cast<int>((right - left) / tick_width))) {
      const std::string at = coordinate(x(tick.value));
      grid += fmt::format("M{} {}V{}", at, coordinate(top), coordinate(bottom));
      labels += text(x(tick.value), bottom + 18, Anchor::kMiddle, tick.text);
    }
    for (const Tick& tick : ticks(chart_.y, static_cast<int>((bottom - top) / kTickHeight))) {
      const std::string at = coordinate(y(tick.value));
      grid += fmt::format("M{} {}H{}", coordinate(left), at, coordinate(right));
      labels += text(left - 6, y(tick.value) + 5, Anchor::kEnd, tick.text);
    }
    if (!grid.empty()) out_ += path("grid", grid);
    out_ += path("frame", fmt::format("M{} {}H{}V{}H{}Z", coordinate(left), coordinate(top),
                                      coordinate(right), coordinate(bottom), coordinate(left)));
    out_ += labels;
    if (!chart_.x.label.empty()) {
      out_ += text((left + right) / 2, bottom + 38, Anchor::kMiddle, chart_.x.label);
    }
    if (!chart_.y.label.empty()) out_ += text(8, top - 12, Anchor::kStart, chart_.y.label);
  }

  void draw(const Series& series) {
    if (!series.lower.empty()) return draw_area(series);
    std::vector<Point> placed;
    std::ranges::transform(series.points, std::back_inserter(placed),
                           [&](const Point& point) { return place(point); });
    std::string commands;
    for (const std::vector<Point>& part : clip(placed, plot_)) commands += line_through(part);
    if (!commands.empty()) out_ += path(css_class(series), commands);
  }

  // The upper line forth and the lower one back, a shape for each stretch without a gap.
  void draw_area(const Series& series) {
    std::string commands;
    std::vector<Point> upper, lower;
    const auto close = [&] {
      if (upper.empty()) return;
      upper.insert(upper.end(), lower.rbegin(), lower.rend());
      commands += line_through(upper) + 'Z';
      upper.clear();
      lower.clear();
    };
    for (std::size_t i = 0; i < series.points.size(); ++i) {
      const Point high = place(series.points[i]);
      const Point low = place({series.points[i].x, series.lower[i]});
      if (std::isfinite(high.x) && std::isfinite(high.y) && std::isfinite(low.y)) {
        upper.push_back(to_plot(high));
        lower.push_back(to_plot(low));
      } else {
        close();
      }
    }
    close();
    if (!commands.empty()) out_ += path(css_class(series), commands);
  }

  Point to_plot(const Point& point) const {
    return {std::clamp(point.x, plot_.left, plot_.right),
            std::clamp(point.y, plot_.top, plot_.bottom)};
  }

  void draw_marks() {
    std::optional<double> previous;
    for (const Mark& mark : chart_.marks) {
      if (mark.axis == Mark::Axis::kY) {
        draw_level(mark);
      } else if (const double at = x(mark.at); plot_.left <= at && at <= plot_.right) {
        draw_upright(mark, at, previous);
        previous = at;
      }
    }
  }

  void draw_level(const Mark& mark) {
    const double at = y(mark.at);
    if (!(plot_.top <= at && at <= plot_.bottom)) return;
    out_ += path("mark", line_between({plot_.left, at}, {plot_.right, at}));
    const bool room_above = at - plot_.top > kUpright;
    out_ += text(plot_.right - 6, at + (room_above ? -5 : 16), Anchor::kEnd, mark.label,
                 " class=\"halo\"");
  }

  // Its name runs upwards, left of it unless that is where the mark before it stands, and at the
  // end where the lines leave more room.
  void draw_upright(const Mark& mark, double at, std::optional<double> previous) {
    out_ += path("mark", line_between({at, plot_.top}, {at, plot_.bottom}));
    const bool taken = previous && at >= *previous && at - *previous < kUpright;
    const double baseline = at - plot_.left > kUpright && !taken ? at - 5 : at + 15;
    const bool at_top = room_at_top(mark.at);
    out_ += text(
        0, 0, at_top ? Anchor::kEnd : Anchor::kStart, mark.label,
        fmt::format(" class=\"halo\" transform=\"translate({} {}) rotate(-90)\"",
                    coordinate(baseline), coordinate(at_top ? plot_.top + 6 : plot_.bottom - 6)));
  }

  bool room_at_top(double value) const {
    double highest = plot_.bottom, lowest = plot_.top;
    for (const Series& series : chart_.series) {
      const double level = value_at(series, value);
      if (!std::isfinite(level)) continue;
      const double height = std::clamp(y(level), plot_.top, plot_.bottom);
      highest = std::min(highest, height);
      lowest = std::max(lowest, height);
    }
    return highest - plot_.top >= plot_.bottom - lowest;
  }

  const Chart& chart_;
  Rectangle plot_ = {};
  std::string out_;
};

// What makes a chart accessible, then what it shows.
std::string content(const Chart& chart, Size size) {
  return fmt::format("<title>{}</title>\n<desc>{}</desc>\n{}", escape_xml(chart.title),
                     escape_xml(chart.description), Drawing(chart, size).elements());
}

}  // namespace

std::string svg(const Chart& chart, Size size) {
  return fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"chart\" role=\"img\" {}>\n{}</svg>\n",
      box(size), content(chart, size));
}

std::string svg_file(std::string_view heading, std::span<const Chart> charts, Size size) {
  std::string groups;
  double top = heading.empty() ? 0 : kTitle;
  for (const Chart& chart : charts) {
    Size grown = size;
    grown.height += std::max(0, legend_of(chart, size.width).rows - 1) * kLegendRow;
    groups += fmt::format("<g role=\"img\" transform=\"translate(0 {})\">\n{}</g>\n",
                          coordinate(top), content(chart, grown));
    top += grown.height;
  }
  const Size all{size.width, top};
  std::string file = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
  file += fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"chart\" width=\"{}\" height=\"{}\" {}>\n",
      coordinate(all.width), coordinate(all.height), box(all));
  file += fmt::format("<title>{}</title>\n<style>\n{}</style>\n", escape_xml(heading), chart_css());
  file += paper(all) + (heading.empty() ? "" : title(heading));
  return file + groups + "</svg>\n";
}

}  // namespace channelstrip::host
