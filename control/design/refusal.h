// Why a strip can't have its settings: a plain value. possible.h finds it, refusal_words.h makes
// words of it.

#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>
#include <variant>

#include "section.h"
#include "settings.h"

namespace channelstrip::host {

struct ChannelLayout;

// What a value should be. The numbers are members of BrokenRule.
enum class Rule : std::uint8_t {
  kWithin,        // `low` to `high`
  kZeroOrWithin,  // 0, or `low` to `high`
  kAboveUpTo,     // above `low` and at most `high`
  kAboveZero,
  kFinite,
  kAboveZeroAndFinite,
  kBelowHalfTheRate,  // below half of `given`, a sample rate in Hz
  kPassSlope,         // 6, 12, 18 ... 96 dB/oct
  kShelfSlope,        // above 0 and below `high`, the limit at a gain of `given` dB
  kOneOrMore,
  kShortEnough  // for single precision at a sample rate of `given` Hz
};

struct BrokenRule {
  std::string_view setting;  // its name
  double value = 0;
  std::string_view unit = {};
  Rule rule = Rule::kFinite;
  double low = 0, high = 0, given = 0;
};

// A band of which single precision leaves no stable filter.
struct UnstableBand {
  BandSettings band;
  double sample_rate = 0;  // Hz
  Section section;         // of floats, the first that isn't stable
};

struct TooManySections {
  std::size_t bands = 0, sections = 0;
};

// The key filter has a single section.
struct SteepKeyFilter {
  int slope = 0;  // dB/oct
  int sections = 0;
};

// A text that is no link map of the layout. It stands in the text that was read, and is valid as
// long as this and the layout are.
struct LinkFault {
  enum class Kind : std::uint8_t {
    kUnknownFormat,  // `text` is the format's name
    kUnknownLabel,   // `text` is none of the layout's labels
    kTwice,          // `text` is a label
    kEmptyGroup,     // `text` is the whole map
    kMissing         // `text` is a label, the layout's
  };
  Kind kind = Kind::kUnknownFormat;
  std::string_view text;
  const ChannelLayout* layout = nullptr;  // of an unknown label
};

struct Refusal {
  // Where the setting stands.
  enum class Where : std::uint8_t {
    kInStrip,  // or in what was judged by itself
    kInBands,  // all together
    kInBand,
    kInCompressor,
    kInExpander,
    kInDetector,
    kInKeyFilter,
    kInLinks
  };
  std::variant<BrokenRule, UnstableBand, TooManySections, SteepKeyFilter, LinkFault> why;
  Where where = Where::kInStrip;
  std::size_t band = 0;  // number of a band, from 1, those before the dynamics first
};
static_assert(std::is_trivially_copyable_v<Refusal>);

}  // namespace channelstrip::host
