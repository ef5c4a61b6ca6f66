// The few elements of HTML that a report is made of. Text is escaped, markup is taken as it is.

#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::host {

// The first column names its rows.
struct HtmlTable {
  std::string caption = {};
  std::vector<std::string> columns;
  std::vector<std::vector<std::string>> rows = {};
  bool numbers = true;  // all but the first column are set flush right
};

std::string html(const HtmlTable& table);

// "<name class="...">text</name>"
std::string element(std::string_view name, std::string_view css_class, std::string_view text);

// A heading and what follows, as markup.
std::string section(std::string_view heading, std::string_view markup);

}  // namespace channelstrip::host
