// The one table of what can be set on a strip: a hundred-odd finite numbers.
//
// Each has a number and a symbol that never change again. It is made of the keys of presets: a
// group's number of hundreds, and the key's own number.

#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>

#include "../preset/preset_keys.h"

namespace channelstrip::host {

// How the values of a slider lie along its way.
enum class SliderScale : std::uint8_t { kLinear, kLogarithmic };

struct Parameter {
  std::uint32_t id = 0;
  Kind kind = Kind::kNumber;
  SliderScale scale = SliderScale::kLinear;
  bool lasting = false;  // a preset's changes can't change it
  double minimum = 0, maximum = 1, initial = 0;
  double step = 0;              // values are multiples of it; 0: any
  double least_above_zero = 0;  // a value between 0 and this counts as 0
  std::size_t group = 0;        // index into kGroups
  std::string_view key;         // in the group's table of a preset
  std::string_view unit;
  std::string_view meaning;
  std::span<const std::string_view> words = {};
  // One of them is null.
  const Key<EqBand>* band_key = nullptr;
  const Key<StripSettings>* strip_key = nullptr;
  char symbol[32] = {}, name[32] = {}, short_name[16] = {};  // end in zeros
};

// A group of parameters is a table of a preset.
struct ParameterGroup {
  std::uint32_t number;    // the hundreds of its parameters
  std::string_view table;  // in a preset; of a band "eq"
  std::string_view title;
  std::string_view short_title;
};

inline constexpr std::size_t kBandCount = 8;
inline constexpr std::array<ParameterGroup, 16> kGroups{{{0, "", "Strip", ""},
                                                         {1, "eq", "EQ 1", "1"},
                                                         {2, "eq", "EQ 2", "2"},
                                                         {3, "eq", "EQ 3", "3"},
                                                         {4, "eq", "EQ 4", "4"},
                                                         {5, "eq", "EQ 5", "5"},
                                                         {6, "eq", "EQ 6", "6"},
                                                         {7, "eq", "EQ 7", "7"},
                                                         {8, "eq", "EQ 8", "8"},
                                                         {9, "key_filter", "Key filter", "KF"},
                                                         {10, "compressor", "Compressor", "C"},
                                                         {11, "expander", "Expander", "E"},
                                                         {12, "detector", "Detector", "D"},
                                                         {13, "key", "Key", "K"},
                                                         {14, "meter", "Meter", "M"},
                                                         {15, "link", "Link", "L"}}};
inline constexpr std::size_t kFirstBandGroup = 1, kKeyFilterGroup = 9;

inline constexpr std::size_t kParameterCount =
    std::size(kTopKeys) + kBandCount * std::size(kBandKeys) + kKeyFilterKeys.size() +
    std::size(kCompressorKeys) + std::size(kExpanderKeys) + std::size(kDetectorKeys) +
    std::size(kKeyKeys) + std::size(kMeterKeys) + std::size(kLinkKeys);

// A ratio of this or more is infinite.
inline constexpr double kInfiniteRatio = 1000;

std::span<const Parameter, kParameterCount> parameters();

// The index of a parameter; none if there is no such.
std::optional<std::size_t> index_of(std::uint32_t id);
std::optional<std::size_t> index_of(std::string_view symbol);
// By the preset's table and key; of a band also its number from 0.
std::optional<std::size_t> index_of(std::size_t group, std::string_view key);

// The legal value next to one: within the limits, a multiple of the step, a whole number for
// choices and switches. The value must not be NaN.
double nearest_value(const Parameter& parameter, double value);

// A slider's position, 0 to 1, for a value, and back.
double position_of(const Parameter& parameter, double value);
double value_at(const Parameter& parameter, double position);

}  // namespace channelstrip::host
