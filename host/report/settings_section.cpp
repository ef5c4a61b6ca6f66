#include <fmt/format.h>

#include <algorithm>

#include "../text/wording.h"
#include "html.h"
#include "page.h"
#include "settings_tables.h"

namespace channelstrip::host {
namespace {

// The rows of `after` that `before` doesn't have.
std::vector<HtmlTable> changed(const StripSettings& before, const StripSettings& after) {
  const std::vector<HtmlTable> old = settings_tables(before);
  std::vector<HtmlTable> tables = settings_tables(after);
  for (HtmlTable& table : tables) {
    const auto same = std::ranges::find(old, table.caption, &HtmlTable::caption);
    if (same == old.end()) continue;
    std::erase_if(table.rows, [&](const auto& row) {
      return std::ranges::find(same->rows, row) != same->rows.end();
    });
  }
  std::erase_if(tables, [](const HtmlTable& table) { return table.rows.empty(); });
  return tables;
}

// Tables of bands over the whole width, below them the others in columns.
std::string settings_markup(const std::vector<HtmlTable>& tables) {
  std::string bands, others;
  for (const HtmlTable& table : tables) (table.columns.size() > 3 ? bands : others) += html(table);
  return bands + "<div class=\"tables\">\n" + others + "</div>\n";
}

}  // namespace

std::string settings_section(const Preset& preset) {
  std::string markup;
  if (!preset.file.empty()) markup += element("p", "soft", preset.file);
  markup += settings_markup(settings_tables(preset.settings));
  const StripSettings* before = &preset.settings;
  for (const auto& [time, after] : preset.changes) {
    markup += element("h3", "", fmt::format("From {} on", duration(time)));
    markup += settings_markup(changed(*before, after));
    before = &after;
  }
  return section("Settings", markup);
}

}  // namespace channelstrip::host
