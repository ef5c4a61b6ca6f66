#include "../design/channel_layout.h"
#include "../design/link_map.h"
#include "../library/stem_format.h"
#include "band_draft.h"
#include "draft.h"
#include "preset_keys.h"
#include "writer.h"

namespace channelstrip::host {
namespace {

using Known = std::vector<std::string_view>;

[[noreturn]] void fail_unknown_at_top(const Entry& entry, const Layer& layer) {
  const bool is_change = layer.kind == Layer::Kind::kChange;
  Known known{is_change ? "time" : "name"};
  for (const auto& key : kTopKeys) known.push_back(key.name);
  known.push_back("eq");
  known.push_back("key_filter");
  for (const Table& table : std::span(kTables).subspan<1>()) known.push_back(table.name);
  if (layer.kind == Layer::Kind::kPreset) known.push_back("at");
  fail_unknown(entry, layer, entry.key.str(), is_change ? "a change" : "a preset", known);
}

[[noreturn]] void fail_unknown_link(const Entry& entry, const Layer& layer, std::string_view name) {
  Known known = names<StripSettings>(kLinkKeys);
  for (const StemFormat& format : stem_formats()) known.push_back(format.name);
  fail_unknown(entry, layer, name, "[link]", known);
}

void write_link_map(const Entry& entry, const StemFormat& format, const Layer& layer,
                    Draft& draft) {
  const std::string name(format.name);
  const auto older = draft.links.find(name);
  if (layer.kind != Layer::Kind::kAssignment && older != draft.links.end() && older->second.fresh) {
    fail(layer.place(entry.key.source(), entry.path), "this format has a link map already");
  }
  const Place place = layer.place(entry.node.source(), entry.path);
  draft.settings.link[name] = std::string_view(placing(place, [&] {
    const ChannelLayout layout = default_layout(format);
    return text_of(parse_link_map(text_of(entry.node), layout), layout);
  }));
  draft.links[name] = {place};
}

// A format's name may be written without quotes: TOML takes 5.1 for a table 5 with a key 1.
void write_link_maps(const Entry& entry, const Layer& layer, Draft& draft) {
  const std::string name = entry.path.substr(std::string_view("link.").size());
  if (const StemFormat* format = find_stem_format(name)) {
    write_link_map(entry, *format, layer, draft);
  } else if (const toml::table* parts = entry.node.as_table(); parts && !parts->empty()) {
    for (const Entry& part : entries(*parts, entry.path)) write_link_maps(part, layer, draft);
  } else {
    fail_unknown_link(entry, layer, name);
  }
}

void remark_retired_word(const Entry& entry, const Layer& layer, const Key<StripSettings>& key,
                         Draft& draft) {
  if (key.retired.empty() || entry.node.value<std::string_view>() != key.retired) return;
  draft.remarks.push_back(
      message(layer.place(entry.node.source(), entry.path),
              fmt::format("\"{}\" is now called \"{}\"", key.retired, key.words.back())));
}

void write_table(const Entry& entry, const Layer& layer, const Table& table, Draft& draft) {
  if (table.create) table.create(draft.settings);
  for (const Entry& key : entries(table_of(entry, layer), entry.path)) {
    if (const Key<StripSettings>* known = set_key(key, layer, table.keys, draft.settings)) {
      remark_retired_word(key, layer, *known, draft);
      continue;
    }
    if (table.name == "link") {
      write_link_maps(key, layer, draft);
    } else {
      fail_unknown(key, layer, key.key.str(), fmt::format("[{}]", table.name), names(table.keys));
    }
  }
}

void write_name(const Entry& entry, const Layer& layer, Draft& draft) {
  const Place place = layer.place(entry.node.source(), entry.path);
  if (layer.kind == Layer::Kind::kChange) {
    fail(layer.place(entry.key.source(), entry.path), "stands at the top of the preset alone");
  }
  draft.name = placing(place, [&] { return text_of(entry.node); });
}

void write_entry(const Entry& entry, const Layer& layer, Draft& draft) {
  const bool is_preset = layer.kind == Layer::Kind::kPreset;
  const std::string_view name = entry.key.str();
  const auto table = std::ranges::find(kTables, name, &Table::name);
  if (name == "at") {
    if (!is_preset) fail(layer.place(entry.key.source(), name), "stands in a preset alone, [[at]]");
  } else if (name == "time" && layer.kind == Layer::Kind::kChange) {
    return;
  } else if (name == "name") {
    write_name(entry, layer, draft);
  } else if (name == "eq") {
    (is_preset ? write_bands : write_numbered_bands)(entry, layer, draft);
  } else if (name == "key_filter") {
    write_key_filter(entry, layer, draft);
  } else if (table != std::end(kTables) && !name.empty()) {
    write_table(entry, layer, *table, draft);
  } else if (!set_key(entry, layer, kTopKeys, draft.settings)) {
    fail_unknown_at_top(entry, layer);
  }
}

}  // namespace

void write(const toml::table& table, const Layer& layer, Draft& draft) {
  for (const Entry& entry : entries(table)) write_entry(entry, layer, draft);
}

}  // namespace channelstrip::host
