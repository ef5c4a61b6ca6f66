#include <fmt/format.h>

#include <algorithm>

#include "chart.h"
#include "legend.h"
#include "plot.h"
#include "svg_element.h"
#include "text_rows.h"
#include "xml.h"

namespace channelstrip::host {
namespace {

// Room around a plot, in px.
constexpr double kLeft = 52, kRight = 18;
constexpr double kTitle = 30, kGap = 8;
constexpr double kLabel = 20;       // an axis' label
constexpr double kTickLabels = 28;  // below the plot

constexpr double kTitleCharacter = 10.5;  // px, likewise of a title
constexpr double kTitleRow = 22;          // px from one of its rows to the next
constexpr double kNoteRow = 20;           // px high

std::string title(std::string_view content, double top = 0) {
  return text(kGap, top + 20, Anchor::kStart, content, " class=\"title\"");
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

int characters(double width, double character) {
  return static_cast<int>((width - 2 * kGap) / character);
}

struct Heading {
  std::string elements;
  double height = 0;  // px
};

Heading heading_of(std::string_view heading, std::string_view note, double width) {
  Heading result;
  for (const std::string_view row : text_rows(heading, characters(width, kTitleCharacter))) {
    if (result.height > 0) result.height -= kTitle - kTitleRow;
    result.elements += title(row, result.height);
    result.height += kTitle;
  }
  for (const std::string_view row : text_rows(note, characters(width, kCharacter))) {
    result.elements += text(kGap, result.height + kNoteRow - 6, Anchor::kStart, row);
    result.height += kNoteRow;
  }
  return result;
}

}  // namespace

std::string svg(const Chart& chart, Size size) {
  return fmt::format(
      "<svg xmlns=\"http://www.w3.org/2000/svg\" class=\"chart\" role=\"img\" {}>\n{}</svg>\n",
      box(size), content(chart, size));
}

std::string svg_file(std::string_view heading, std::span<const Chart> charts, Size size,
                     std::string_view note) {
  const Heading head = heading_of(heading, note, size.width);
  std::string groups;
  double top = head.height;
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
  return file + paper(all) + head.elements + groups + "</svg>\n";
}

}  // namespace channelstrip::host
