#include "html.h"

#include <fmt/format.h>

#include "../pictures/xml.h"

namespace channelstrip::host {
namespace {

std::string row_of(const std::vector<std::string>& cells) {
  std::string markup = "<tr>";
  for (const std::string& cell : cells) {
    markup += cells.data() == &cell ? fmt::format("<th scope=\"row\">{}</th>", escape_xml(cell))
                                    : fmt::format("<td>{}</td>", escape_xml(cell));
  }
  return markup + "</tr>\n";
}

}  // namespace

std::string element(std::string_view name, std::string_view css_class, std::string_view text) {
  const std::string attribute =
      css_class.empty() ? std::string() : fmt::format(" class=\"{}\"", css_class);
  return fmt::format("<{}{}>{}</{}>\n", name, attribute, escape_xml(text), name);
}

std::string html(const HtmlTable& table) {
  // A table wider than the page scrolls by itself, by keyboard too.
  std::string markup = fmt::format("<div class=\"wide\" tabindex=\"0\">\n<table{}>\n",
                                   table.numbers ? " class=\"numbers\"" : "");
  if (!table.caption.empty()) markup += element("caption", "", table.caption);
  markup += "<thead><tr>";
  for (const std::string& column : table.columns) {
    markup += fmt::format("<th scope=\"col\">{}</th>", escape_xml(column));
  }
  markup += "</tr></thead>\n<tbody>\n";
  for (const auto& row : table.rows) markup += row_of(row);
  return markup + "</tbody>\n</table>\n</div>\n";
}

std::string section(std::string_view heading, std::string_view markup) {
  return fmt::format("<section>\n{}{}</section>\n", element("h2", "", heading), markup);
}

}  // namespace channelstrip::host
