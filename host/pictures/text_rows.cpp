#include "text_rows.h"

#include <algorithm>

#include "xml.h"

namespace channelstrip::host {

std::vector<std::string_view> text_rows(std::string_view text, int most) {
  std::vector<std::string_view> rows;
  while (!text.empty()) {
    std::size_t end = std::min(text.find(' '), text.size());
    while (end < text.size()) {
      const std::size_t next = std::min(text.find(' ', end + 1), text.size());
      if (length(text.substr(0, next)) > most) break;
      end = next;
    }
    rows.push_back(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return rows;
}

}  // namespace channelstrip::host
