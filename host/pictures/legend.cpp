#include "legend.h"

#include <algorithm>
#include <array>

#include "svg_element.h"
#include "xml.h"

namespace channelstrip::host {
namespace {

constexpr double kSwatch = 30, kSwatchGap = 6, kBetween = 16;  // px

std::string swatch(const Series& series, double left, double middle) {
  const double right = left + kSwatch, top = middle - 5, bottom = middle + 5;
  if (series.lower.empty()) {
    return path(css_class(series),
                line_through(std::array<Point, 2>{{{left, middle}, {right, middle}}}));
  }
  const std::array<Point, 4> box{{{left, top}, {right, top}, {right, bottom}, {left, bottom}}};
  return path(css_class(series), line_through(box) + 'Z');
}

}  // namespace

Legend legend(const std::vector<Series>& series, double left, double right, double top) {
  Legend result;
  double x = left;
  for (const Series& each : series) {
    if (each.label.empty()) continue;
    const double width = kSwatch + kSwatchGap + kCharacter * length(each.label);
    const bool starts_row = result.rows == 0 || x + width > right;
    if (starts_row) {
      ++result.rows;
      x = left;
    }
    const double middle = top + (result.rows - 0.5) * kLegendRow;
    result.elements += swatch(each, x, middle);
    result.elements += text(x + kSwatch + kSwatchGap, middle + 5, Anchor::kStart, each.label);
    x += width + kBetween;
  }
  return result;
}

}  // namespace channelstrip::host
