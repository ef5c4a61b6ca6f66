#include "svg_element.h"

#include <fmt/format.h>

#include "xml.h"

namespace channelstrip::host {

std::string coordinate(double value) {
  std::string digits = fmt::format("{:.2f}", value);
  digits.erase(digits.find_last_not_of('0') + 1);
  if (digits.back() == '.') digits.pop_back();
  return digits == "-0" ? "0" : digits;
}

std::string line_through(std::span<const Point> points) {
  std::string commands;
  for (const Point& point : points) {
    commands += commands.empty() ? 'M' : 'L';
    commands += coordinate(point.x) + ' ' + coordinate(point.y);
  }
  return commands;
}

std::string path(std::string_view css_class, std::string_view commands) {
  return fmt::format("<path class=\"{}\" d=\"{}\"/>\n", css_class, commands);
}

std::string text(double x, double y, Anchor anchor, std::string_view content,
                 std::string_view more) {
  constexpr std::string_view kAnchors[] = {"", " text-anchor=\"middle\"", " text-anchor=\"end\""};
  return fmt::format("<text x=\"{}\" y=\"{}\"{}{}>{}</text>\n", coordinate(x), coordinate(y),
                     kAnchors[static_cast<std::size_t>(anchor)], more, escape_xml(content));
}

std::string css_class(const Series& series) {
  return (series.lower.empty() ? "line " : "area ") + escape_xml(series.style);
}

}  // namespace channelstrip::host
