// The coefficients of a strip whose settings change: designs what a change touches, and no more.

#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "../design/channel_layout.h"
#include "../design/settings.h"
#include "../design/single_precision.h"
#include "../design/strip_coefficients.h"

namespace channelstrip::host {

class StripDesign {
 public:
  // The layout must outlive this object. Settings must be possible, see ../design/possible.h, here
  // and in change().
  StripDesign(const StripSettings& settings, double sample_rate, const ChannelLayout& layout);

  const StripSettings& settings() const { return settings_; }
  // Whether `wanted` differs only in what the library glides over, or what its detectors and time
  // constants smooth. Otherwise a cross-fade has to lead to it: the sections of bands come, go,
  // move or change their type, compressor or expander come or go, the outputs carry the detection
  // signals, or channels get another group's gain.
  bool is_near(const StripSettings& wanted) const;
  // Those of design_strip() once the searches are done; until then some bands are only rounded to
  // single precision.
  const StripCoefficients& coefficients() const { return coefficients_; }

  // Without allocation or exception. A section of which no stable one of floats is found becomes
  // neutral.
  void change(const StripSettings& wanted);

  // The searches for the best floats that changes have begun; see PrecisionSearch. A step is a
  // microsecond or two of work. Returns whether the coefficients have changed.
  bool is_searching() const { return waiting_ != 0 || !search_.is_done(); }
  bool step();
  void finish_searches() {
    while (is_searching()) step();
  }

 private:
  static constexpr std::size_t kKeyFilter = 8;  // as a number of a band; the strip's bands are 0..7

  const BandSettings& band(std::size_t number) const;
  float* section_coefficients(std::size_t number);
  void change_bands(const StripSettings& from);
  void change_dynamics(const StripSettings& from);
  void design(std::size_t number);
  void store_sections(std::size_t number, const Sections& sections);

  StripSettings settings_;
  StripCoefficients coefficients_;
  double sample_rate_;
  const ChannelLayout* layout_;
  PrecisionSearch search_;
  std::size_t searched_ = 0;   // the band of the search
  std::uint32_t waiting_ = 0;  // bit by bit, the bands whose search hasn't begun
};

}  // namespace channelstrip::host
