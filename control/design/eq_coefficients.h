// The filters of a strip: its equaliser's sections and its key filter.

#pragma once

#include <ChannelStrip/eq/eq_records.h>

#include <array>
#include <cstddef>
#include <span>

#include "section.h"
#include "settings.h"

namespace channelstrip::host {

// The sections in single precision and in order: those before the dynamics, those after, and
// neutral ones.
struct DesignedEq {
  std::array<Section, CHANNELSTRIP_EQ_BANDS> sections;
  std::size_t pre_count = 0;
  std::size_t post_count = 0;

  std::span<const Section> pre() const { return std::span(sections).first(pre_count); }
  std::span<const Section> post() const {
    return std::span(sections).subspan(pre_count, post_count);
  }
};

DesignedEq design_eq(const StripSettings& settings, double sample_rate);

// The library's record of an equaliser.
EQ_SCoefs eq_record(const DesignedEq& eq);

// The key filter's section in single precision, neutral if there is no key filter.
Section design_key_filter(const StripSettings& settings, double sample_rate);

}  // namespace channelstrip::host
