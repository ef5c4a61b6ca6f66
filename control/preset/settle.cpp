#include <ChannelStrip/eq/eq_records.h>

#include "../design/prototype.h"
#include "draft.h"

namespace channelstrip::host {
namespace {

void settle_keys(BandDraft& draft) {
  for (const Key<EqBand>& key : kBandKeys) {
    const auto origin = draft.origins.find(key.name);
    if (origin == draft.origins.end() || !key.objection) continue;
    const std::string objection = key.objection(draft.band);
    if (objection.empty()) continue;
    if (origin->second.fresh) fail(origin->second.place, objection);
    key.access.set(draft.band, key.access.get(EqBand{}));
    draft.origins.erase(origin);
  }
}

void age(BandDraft& draft) {
  draft.origin.fresh = false;
  for (auto& [key, origin] : draft.origins) origin.fresh = false;
}

// Where this layer set what determines the number of the band's sections: its slope, whether it is
// on, or else the band itself if it is new. Null if it did neither.
const Place* lengthened(const BandDraft& draft) {
  for (const std::string_view key : {"slope", "on"}) {
    const auto origin = draft.origins.find(key);
    if (origin != draft.origins.end() && origin->second.fresh) return &origin->second.place;
  }
  return draft.origin.fresh ? &draft.origin.place : nullptr;
}

// Blames a band that this layer added or whose slope it set: the last one up to the band that
// doesn't fit, or else the first one after it.
void require_room(const Draft& draft) {
  int total = 0;
  const Place* culprit = nullptr;
  for (const BandDraft& band : draft.eq) {
    const bool fitted = total <= CHANNELSTRIP_EQ_BANDS;
    if (band.band.on) total += section_count(band.band);
    const Place* place = lengthened(band);
    if (place && (fitted || !culprit)) culprit = place;
  }
  if (total <= CHANNELSTRIP_EQ_BANDS || !culprit) return;
  fail(*culprit, fmt::format("the bands take {} second-order sections, a strip has {}", total,
                             int{CHANNELSTRIP_EQ_BANDS}));
}

void require_one_section(const BandDraft& key_filter) {
  const Place* culprit = lengthened(key_filter);
  if (!culprit || section_count(key_filter.band) == 1) return;
  fail(*culprit, "the key filter is one section: 6 or 12 dB/oct");
}

}  // namespace

void leave_out_what_is_off(StripSettings& settings) {
  if (settings.compressor && !settings.compressor->on) settings.compressor.reset();
  if (settings.expander && !settings.expander->on) settings.expander.reset();
  if (settings.expander && !settings.expander->gate) {
    settings.expander->gate = true;
    settings.expander->hysteresis.reset();
  }
}

void settle(Draft& draft) {
  for (auto& [format, origin] : draft.links) origin.fresh = false;
  for (BandDraft& band : draft.eq) settle_keys(band);
  require_room(draft);
  for (BandDraft& band : draft.eq) age(band);
  if (!draft.key_filter) return;
  settle_keys(*draft.key_filter);
  require_one_section(*draft.key_filter);
  age(*draft.key_filter);
}

StripSettings settings_of(const Draft& draft) {
  StripSettings settings = draft.settings;
  leave_out_what_is_off(settings);
  for (const BandDraft& band : draft.eq) {
    if (!band.band.on) continue;
    (band.band.position == Position::kPre ? settings.pre : settings.post).push_back(band.band);
  }
  if (draft.key_filter && draft.key_filter->band.on) settings.key_filter = draft.key_filter->band;
  return settings;
}

}  // namespace channelstrip::host
