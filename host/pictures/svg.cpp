#include <fmt/format.h>

#include <algorithm>

#include "chart.h"
#include "legend.h"
#include "plot_elements.h"
#include "svg_element.h"
#include "xml.h"

namespace channelstrip::host {
namespace {

// Room around a plot, in px.
constexpr double kLeft = 52, kRight = 18;
constexpr double kTitle = 30, kGap = 8;
constexpr double kLabel = 20;       // an axis' label
constexpr double kTickLabels = 28;  // below the plot

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

Rectangle plot_area(const Chart& chart, int legend_rows, Size size) {
  return {.left = kLeft,
          .top = kTitle + legend_rows * kLegendRow + kGap + (chart.y.label.empty() ? 0 : kLabel),
          .right = size.width - kRight,
          .bottom = size.height - kTickLabels - (chart.x.label.empty() ? 0 : kLabel)};
}

// What makes a chart accessible, then what it shows.
std::string content(const Chart& chart, Size size) {
  const Legend names = legend_of(chart, size.width);
  const Plot plot(chart.x, chart.y, plot_area(chart, names.rows, size));
  std::string elements = fmt::format("<title>{}</title>\n<desc>{}</desc>\n",
                                     escape_xml(chart.title), escape_xml(chart.description));
  elements += paper(size) + title(chart.title) + names.elements + draw_axes(chart, plot);
  for (const Series& series : chart.series) elements += draw_series(series, plot);
  return elements + draw_marks(chart, plot);
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
