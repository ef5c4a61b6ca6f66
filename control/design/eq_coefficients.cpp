#include "eq_coefficients.h"

#include <fmt/format.h>

#include <algorithm>

#include "band.h"
#include "require.h"

namespace channelstrip::host {
namespace {

using SectionList = FixedVector<Section, 2 * kMostSections * kMostSections>;

// The sections of `bands`, whose first has the number `number`.
void design_bands(std::span<const BandSettings> bands, std::size_t number, double sample_rate,
                  SectionList& sections) {
  for (const BandSettings& band : bands) {
    const auto designed = naming([number] { return fmt::format("eq band {}: ", number); },
                                 [&] { return design_stored_band(band, sample_rate); });
    for (const Section& section : designed) sections.push_back(section);
    ++number;
  }
}

}  // namespace

DesignedEq design_eq(const StripSettings& settings, double sample_rate) {
  SectionList sections;
  design_bands(settings.pre, 1, sample_rate, sections);
  DesignedEq eq;
  eq.pre_count = sections.size();
  design_bands(settings.post, settings.pre.size() + 1, sample_rate, sections);
  if (sections.size() > eq.sections.size()) {
    refuse("eq: {} bands take {} sections, a strip has {}",
           settings.pre.size() + settings.post.size(), sections.size(), eq.sections.size());
  }
  std::ranges::copy(sections, eq.sections.begin());
  eq.post_count = sections.size() - eq.pre_count;
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
  return naming("key filter: ", [&] {
    const Sections sections = design_stored_band(*settings.key_filter, sample_rate);
    if (sections.size() > 1) {
      refuse("slope {} dB/oct takes {} sections, a key filter is one", settings.key_filter->slope,
             sections.size());
    }
    return sections.front();
  });
}

}  // namespace channelstrip::host
