#include "eq_coefficients.h"

#include <algorithm>

#include "band.h"

namespace channelstrip::host {

DesignedEq design_eq(const StripSettings& settings, double sample_rate) {
  Sections sections;
  const auto add = [&](std::span<const BandSettings> bands) {
    for (const BandSettings& band : bands) {
      for (const Section& section : design_stored_band(band, sample_rate)) {
        sections.push_back(section);
      }
    }
    return sections.size();
  };
  DesignedEq eq;
  eq.pre_count = add(settings.pre);
  eq.post_count = add(settings.post) - eq.pre_count;
  std::ranges::copy(sections, eq.sections.begin());
  return eq;
}

EQ_SCoefs eq_record(const DesignedEq& eq) {
  EQ_SCoefs record{};
  float* coefficients = record.targetCoefs;
  for (const Section& section : eq.sections) {
    store(section, coefficients);
    coefficients += 5;
  }
  record.endBand[0] = record.firstBand[1] = static_cast<int32_t>(eq.pre_count);
  record.endBand[1] = static_cast<int32_t>(eq.pre_count + eq.post_count);
  return record;
}

Section design_key_filter(const StripSettings& settings, double sample_rate) {
  if (!settings.key_filter) return {};
  return design_stored_band(*settings.key_filter, sample_rate).front();
}

}  // namespace channelstrip::host
