#include "band_draft.h"

#include <charconv>

#include "writer.h"

namespace channelstrip::host {
namespace {

// Values that have no use at present: they have to be right, too.
void check_idle(const Entry& entry, const Layer& layer, std::string_view title, Keys<EqBand> keys) {
  EqBand nowhere;
  for (const Entry& key : entries(table_of(entry, layer), entry.path)) {
    if (!set_key(key, layer, keys, nowhere)) {
      fail_unknown(key, layer, key.key.str(), title, names(keys));
    }
  }
}

void write_band(const Entry& entry, const Layer& layer, std::string_view title, Keys<EqBand> keys,
                BandDraft& draft) {
  for (const Entry& key : entries(table_of(entry, layer), entry.path)) {
    if (key.key.str() == kIdle) {
      check_idle(key, layer, title, keys);
      continue;
    }
    const auto* found = set_key(key, layer, keys, draft.band);
    if (!found) fail_unknown(key, layer, key.key.str(), title, names(keys));
    draft.origins[found->name] = {layer.place(key.key.source(), key.path)};
  }
}

// 0 for what is no number.
std::size_t number(std::string_view text) {
  std::size_t value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  return error == std::errc() && stop == end ? value : 0;
}

std::string counted(std::size_t count) {
  return count == 0 ? "no bands" : count == 1 ? "1 band" : fmt::format("{} bands", count);
}

}  // namespace

void write_bands(const Entry& eq, const Layer& layer, Draft& draft) {
  constexpr std::string_view kNoTables = "must be an array of tables, [[eq]]";
  const toml::array* tables = eq.node.as_array();
  if (!tables) fail(layer.place(eq.node.source(), eq.path), kNoTables);
  for (const toml::node& table : *tables) {
    const Entry band{eq.key, table, fmt::format("eq.{}", draft.eq.size() + 1)};
    const Place place = layer.place(table.source(), band.path);
    if (!table.is_table()) fail(place, kNoTables);
    draft.eq.push_back({.origin = {place}});
    write_band(band, layer, "[[eq]]", kBandKeys, draft.eq.back());
  }
}

void write_numbered_bands(const Entry& eq, const Layer& layer, Draft& draft) {
  const toml::table* bands = eq.node.as_table();
  if (!bands) fail(layer.place(eq.node.source(), eq.path), "must be a table, eq.1.KEY");
  for (const Entry& band : entries(*bands, eq.path)) {
    const Place place = layer.place(band.key.source(), band.path);
    const std::size_t index = number(band.key.str());
    const std::size_t count = draft.eq.size();
    if (index == 0) fail(place, "eq takes the number of a band, eq.1 for the first");
    const bool may_add = layer.kind == Layer::Kind::kAssignment;
    if (index > count + (may_add ? 1 : 0)) {
      fail(place, fmt::format("the preset has {}{}", counted(count),
                              may_add ? fmt::format("; eq.{} would add one", count + 1)
                                      : ", and a change in time can't add one"));
    }
    if (index > count) draft.eq.push_back({.origin = {place}});
    write_band(band, layer, "[[eq]]", kBandKeys, draft.eq[index - 1]);
  }
}

void write_key_filter(const Entry& key_filter, const Layer& layer, Draft& draft) {
  if (!draft.key_filter) {
    const Place place = layer.place(key_filter.key.source(), key_filter.path);
    if (layer.kind == Layer::Kind::kChange) {
      fail(place, "the preset has no key filter, and a change in time can't add one");
    }
    draft.key_filter = {.origin = {place}};
  }
  write_band(key_filter, layer, "[key_filter]", kKeyFilterKeys, *draft.key_filter);
}

}  // namespace channelstrip::host
