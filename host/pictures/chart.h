// Charts as SVG: lines and areas over two axes. The same chart is the same bytes everywhere.
//
// Nothing is coloured by attribute: what is drawn carries CSS classes inside an element of class
// "chart", and a page that shows charts may restyle them. chart_css() is what they look like
// otherwise, light or dark as the reader's system prefers.

#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

// How an axis is spaced and which values it names.
enum class Scale {
  kLinear,
  kLogarithmic,  // 20 50 100 200 500 1k 2k 5k 10k 20k
  kDecibels,     // linear; steps of 1, 2, 3, 6, 12, 24 or more
  kDegrees,      // linear; steps of 15, 45, 90, 180 or more
  kTime          // linear, of seconds; from a minute on 1:30
};

struct Axis {
  std::string label;  // with its unit
  double low = 0;     // below high; above 0 where the scale is logarithmic
  double high = 1;
  Scale scale = Scale::kLinear;
};

struct Point {
  double x = 0, y = 0;
};

// A line through points in order of x, cut at the edges of the plot; a point that isn't finite
// breaks it.
struct Series {
  std::string label;         // in the legend; none without
  std::string style = "s1";  // classes: s1 to s8, "main" (thick), "main dashed", "guide" (thin)
  std::vector<Point> points;
  std::vector<double> lower = {};  // one per point: fills what is between, as of a waveform
};

// A line across the plot with its name beside it, as of a threshold.
struct Mark {
  enum class Axis { kX, kY } axis = Axis::kX;
  double at = 0;
  std::string label;
};

struct Chart {
  std::string title;
  std::string description;  // what a reader who can't see the chart is told
  Axis x, y;
  std::vector<Series> series = {};  // the first lies at the back
  std::vector<Mark> marks = {};
};

// In CSS pixels at the natural scale, where text is 14 high. A chart of 560 shown on a telephone
// 390 wide has text of 10.
struct Size {
  double width = 560, height = 320;
};

std::string_view chart_css();

// One chart as an <svg> element for a page that includes chart_css() once; it scales with its
// container. Throws std::invalid_argument for an axis without extent or a `lower` of another length
// than its points.
std::string svg(const Chart& chart, Size size = {});

// A whole file: charts below each other under a heading and a note to it, in as many rows as these
// take, with their style. Each chart is of `size`, and higher by what its legend takes beyond one
// row. Throws likewise.
std::string svg_file(std::string_view heading, std::span<const Chart> charts, Size size = {},
                     std::string_view note = {});

}  // namespace channelstrip::host
