#include "settings_tables.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <span>
#include <string_view>

#include "control/preset/band_keys.h"
#include "control/preset/preset_keys.h"

namespace channelstrip::host {
namespace {

constexpr const char* kNone = "–";

// The value as in a preset, with its unit; an en dash if the key means nothing to these settings.
template <typename Settings>
std::string value_of(const Key<Settings>& key, const Settings& settings) {
  const Value value = key.access.get(settings);
  if (!value || (key.objection && !key.objection(settings).empty())) return kNone;
  if (key.access.kind == Kind::kSwitch) return *value != 0 ? "true" : "false";
  if (key.access.kind == Kind::kWord) {
    return std::string(key.words[static_cast<std::size_t>(*value)]);
  }
  return fmt::format("{}{}{}", *value, key.range.unit.empty() ? "" : " ", key.range.unit);
}

std::vector<std::string> row_of(std::string name, const EqBand& band,
                                std::span<const Key<EqBand>> keys) {
  std::vector<std::string> row{std::move(name)};
  for (const Key<EqBand>& key : keys) {
    if (!key.switches) row.push_back(value_of(key, band));
  }
  return row;
}

HtmlTable band_table(std::string caption, std::span<const Key<EqBand>> keys) {
  HtmlTable table{.caption = std::move(caption), .columns = {""}, .numbers = false};
  for (const Key<EqBand>& key : keys) {
    if (!key.switches) table.columns.emplace_back(key.name);
  }
  return table;
}

HtmlTable eq_table(const StripSettings& settings) {
  HtmlTable table = band_table("eq", kBandKeys);
  const auto add = [&](const BandSettings& band, Position position) {
    table.rows.push_back(
        row_of(fmt::format("{}", table.rows.size() + 1), EqBand{band, position}, kBandKeys));
  };
  for (const BandSettings& band : settings.pre) add(band, Position::kPre);
  for (const BandSettings& band : settings.post) add(band, Position::kPost);
  return table;
}

HtmlTable key_filter_table(const BandSettings& band) {
  HtmlTable table = band_table("key_filter", kKeyFilterKeys);
  table.rows.push_back(row_of("", EqBand{band, Position::kPre}, kKeyFilterKeys));
  return table;
}

// Whether the table belongs to a processor that isn't switched on.
bool is_off(std::string_view table, const StripSettings& settings) {
  return (table == "compressor" && !settings.compressor) ||
         (table == "expander" && !settings.expander);
}

HtmlTable table_of(const Table& keys, const StripSettings& settings) {
  HtmlTable table{.caption = std::string(keys.name.empty() ? "strip" : keys.name),
                  .columns = {"", "Setting", "Meaning"},
                  .numbers = false};
  for (const auto& key : keys.keys) {
    if (key.switches) continue;
    table.rows.push_back(
        {std::string(key.name), value_of(key, settings), std::string(key.meaning)});
  }
  if (keys.name == "link") {
    for (const auto& [format, map] : settings.link) {
      table.rows.push_back(
          {std::string(format.view()), std::string(map.view()), "groups of this format"});
    }
  }
  return table;
}

}  // namespace

std::vector<HtmlTable> settings_tables(const StripSettings& settings) {
  std::vector<HtmlTable> tables;
  if (!settings.pre.empty() || !settings.post.empty()) tables.push_back(eq_table(settings));
  if (settings.key_filter) tables.push_back(key_filter_table(*settings.key_filter));
  for (const Table& keys : kTables) {
    if (!is_off(keys.name, settings)) tables.push_back(table_of(keys, settings));
  }
  return tables;
}

}  // namespace channelstrip::host
