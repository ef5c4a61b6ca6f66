#include "preset.h"

#include <toml++/toml.h>

#include "../design/link_map.h"
#include "../design/possible.h"
#include "../design/refusal_words.h"
#include "../text/text_file.h"
#include "assignment.h"
#include "automation.h"
#include "draft.h"

namespace channelstrip::host {
namespace {

toml::table parse(std::string_view text, const Layer& layer) {
  try {
    return toml::parse(text, layer.origin);
  } catch (const toml::parse_error& error) {
    fail(layer.place(error.source(), "syntax error"), error.description());
  }
}

// Notes where the bands and link maps of the draft were written, for check_fits().
void note_places(const Draft& draft, Preset& preset) {
  const auto note = [&](const BandDraft& band, bool key_filter = false) {
    const auto frequency = band.origins.find("frequency");
    Place place = frequency == band.origins.end() ? band.origin.place : frequency->second.place;
    if (!place.key.empty()) place.key = band.origin.place.key;
    preset.bands.push_back({place, band.band, key_filter});
  };
  for (const BandDraft& band : draft.eq) {
    if (band.band.on) note(band);
  }
  if (draft.key_filter && draft.key_filter->band.on) note(*draft.key_filter, true);
  for (const auto& [format, map] : draft.settings.link) {
    const std::string name(format.view());
    preset.links.push_back({draft.links.at(name).place, name, std::string(map.view())});
  }
}

Preset build(std::string_view text, const std::string& file,
             const std::vector<std::string>& assignments) {
  const Layer layer{Layer::Kind::kPreset, file};
  const toml::table root = parse(text, layer);
  Draft draft;
  write(root, layer, draft);
  settle(draft);
  for (const std::string& assignment : assignments) assign(assignment, draft);
  settle(draft);

  Preset preset{.file = file, .name = draft.name, .settings = settings_of(draft)};
  note_places(draft, preset);
  for (const Moment& moment : moments(root, file)) {
    write(moment.keys, moment.layer, draft);
    settle(draft);
    preset.changes.push_back({moment.time, settings_of(draft)});
    note_places(draft, preset);
  }
  preset.remarks = draft.remarks;
  return preset;
}

}  // namespace

Preset read_preset(const std::string& path) {
  return load_preset(path, {});
}

Preset parse_preset(std::string_view text, const std::string& file) {
  return build(text, file, {});
}

Preset load_preset(const std::optional<std::string>& path,
                   const std::vector<std::string>& assignments) {
  return build(path ? read_text_file(*path) : "", path.value_or(""), assignments);
}

void check_fits(const Preset& preset, double sample_rate, const ChannelLayout& layout) {
  for (const auto& [place, band, key_filter] : preset.bands) {
    if (const auto refusal = refusal_of(band, sample_rate)) fail(place, words_of(*refusal));
  }
  for (const auto& [place, format, map] : preset.links) {
    if (format != layout.format->name) continue;
    const auto refusal = read_link_map(map, layout).refusal;
    if (refusal) fail(place, words_of(*refusal));
  }
}

}  // namespace channelstrip::host
