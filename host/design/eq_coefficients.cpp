#include "eq_coefficients.h"

#include <fmt/format.h>

#include <algorithm>
#include <stdexcept>
#include <vector>

#include "band.h"
#include "require.h"

namespace channelstrip::host {
namespace {

// The sections of `bands`, whose first has the number `number`.
std::vector<Section> design_bands(const std::vector<BandSettings>& bands, std::size_t number,
                                  double sample_rate) {
  std::vector<Section> sections;
  for (const BandSettings& band : bands) {
    const auto designed = naming(fmt::format("eq band {}: ", number++),
                                 [&] { return design_stored_band(band, sample_rate); });
    sections.insert(sections.end(), designed.begin(), designed.end());
  }
  return sections;
}

}  // namespace

DesignedEq design_eq(const StripSettings& settings, double sample_rate) {
  const auto pre = design_bands(settings.pre, 1, sample_rate);
  const auto post = design_bands(settings.post, settings.pre.size() + 1, sample_rate);
  DesignedEq eq;
  if (pre.size() + post.size() > eq.sections.size()) {
    throw std::invalid_argument(fmt::format("eq: {} bands take {} sections, a strip has {}",
                                            settings.pre.size() + settings.post.size(),
                                            pre.size() + post.size(), eq.sections.size()));
  }
  std::ranges::copy(post, std::ranges::copy(pre, eq.sections.begin()).out);
  eq.pre_count = pre.size();
  eq.post_count = post.size();
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
    const auto sections = design_stored_band(*settings.key_filter, sample_rate);
    if (sections.size() > 1) {
      throw std::invalid_argument(
          fmt::format("slope {} dB/oct takes {} sections, a key filter is one",
                      settings.key_filter->slope, sections.size()));
    }
    return sections.front();
  });
}

}  // namespace channelstrip::host
