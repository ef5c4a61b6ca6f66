// The parameters of a strip by what they are for. All are indices of channelstrip_parameter_info().

#pragma once

#include <channelstrip/channelstrip.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::view {

inline constexpr std::size_t kBands = 8;
inline constexpr std::size_t kNoParameter = static_cast<std::size_t>(-1);

// In the order of the words of a band's type.
enum class BandType {
  kPeak,
  kLowShelf,
  kHighShelf,
  kLowPass,
  kHighPass,
  kBandPass,
  kNotch,
  kAllPass,
  kTilt
};

struct BandParameters {
  std::size_t on, type, frequency, gain, q, shelf_slope, slope, design;
  std::size_t position;  // the key filter has none: kNoParameter
};

struct Parameters {
  std::vector<channelstrip_parameter> all;
  std::array<BandParameters, kBands> bands;
  BandParameters key_filter;
  struct {
    std::size_t on, threshold, ratio, knee, attack, release, range, makeup, auto_makeup;
  } compressor;
  struct {
    std::size_t on, threshold, ratio, knee, attack, release, hold, range, gate, hysteresis;
  } expander;
  struct {
    std::size_t enable, listen;
  } key;
  struct {
    std::size_t mode, time;
  } detector;
  std::size_t gain_in, gain_out, mix, bypass, glide, meter_gain, link;

  std::size_t index_of(std::string_view symbol) const;  // kNoParameter if there is none
};

// Read once from the control library. [any thread]
const Parameters& parameters();

// A value as it is shown: "−2.5" and "kHz", "inf:1" and "", "high pass" and "". Signs and names are
// typographic; what is typed in is read by channelstrip_text_to_value().
struct ValueText {
  std::string number, unit;
};
ValueText value_text(std::size_t parameter, double value);

// Which of a band's values its type has a use for.
struct BandUse {
  bool gain, q, shelf_slope, slope;
};
BandUse use_of(const BandParameters& band, const std::vector<double>& values);

}  // namespace channelstrip::view
