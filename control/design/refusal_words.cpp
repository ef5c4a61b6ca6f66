#include "refusal_words.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <cmath>
#include <complex>
#include <variant>
#include <vector>

#include "channel_layout.h"
#include "possible.h"
#include "prototype.h"
#include "refuse.h"

namespace channelstrip::host {
namespace {

// As the value and the limits of a rule show it.
std::string with_unit(double value, std::string_view unit) {
  return fmt::format("{}{}{}", value, unit.empty() ? "" : " ", unit);
}

std::string words_of_rule(const BrokenRule& broken) {
  const auto& [setting, value, unit, rule, low, high, given] = broken;
  switch (rule) {
    case Rule::kWithin:
      return fmt::format("{} to {}", low, with_unit(high, unit));
    case Rule::kZeroOrWithin:
      return fmt::format("0 or {} to {}", low, with_unit(high, unit));
    case Rule::kAboveUpTo:
      return fmt::format("above {} and at most {}", with_unit(low, unit), with_unit(high, unit));
    case Rule::kAboveZero:
      return fmt::format("above {}", with_unit(0, unit));
    case Rule::kFinite:
      return "finite";
    case Rule::kAboveZeroAndFinite:
      return "above 0 and finite";
    case Rule::kBelowHalfTheRate:
      return fmt::format("below half the sample rate {} Hz", given);
    case Rule::kPassSlope:
      return fmt::format("6, 12, 18 ... {}", with_unit(96, unit));
    case Rule::kShelfSlope:
      return fmt::format("above 0 and below {:.4g} at a gain of {} dB", high, given);
    case Rule::kOneOrMore:
      return fmt::format("1 or more: {}", kNeverLouder);
    case Rule::kShortEnough:
      return fmt::format("short enough for single precision at {} Hz", given);
  }
  return {};
}

std::string words_of(const BrokenRule& broken) {
  return fmt::format("{} {} is not {}", broken.setting, with_unit(broken.value, broken.unit),
                     words_of_rule(broken));
}

// The settings that the band's coefficients come from.
std::string described(const BandSettings& band) {
  std::vector<std::string> settings{fmt::format("frequency {} Hz", band.frequency)};
  if (uses_q(band)) settings.push_back(fmt::format("q {}", band.q));
  if (uses_shelf_slope(band)) settings.push_back(fmt::format("shelf_slope {}", *band.shelf_slope));
  if (uses_gain(band)) settings.push_back(fmt::format("gain {} dB", band.gain));
  if (uses_slope(band)) settings.push_back(fmt::format("slope {} dB/oct", band.slope));
  const std::string last = settings.back();
  settings.pop_back();
  return fmt::format("{} and {}", fmt::join(settings, ", "), last);
}

std::string words_of_instability(const Section& section) {
  if (!is_finite(section)) return "coefficients are not finite";
  const auto [first, second] = poles(section);
  return fmt::format("a pole stands at radius {}", std::max(std::abs(first), std::abs(second)));
}

std::string words_of(const UnstableBand& unstable) {
  return fmt::format("{} leave no stable filter in single precision at {} Hz: {}",
                     described(unstable.band), unstable.sample_rate,
                     words_of_instability(unstable.section));
}

std::string words_of(const TooManySections& taken) {
  return fmt::format("{} bands take {} sections, a strip has {}", taken.bands, taken.sections,
                     kMostSections);
}

std::string words_of(const SteepKeyFilter& steep) {
  return fmt::format("slope {} dB/oct takes {} sections, a key filter is one", steep.slope,
                     steep.sections);
}

std::string words_of(const LinkFault& fault) {
  using Kind = LinkFault::Kind;
  switch (fault.kind) {
    case Kind::kUnknownFormat:
      return fmt::format("no format is called {}", fault.text);
    case Kind::kUnknownLabel:
      return fmt::format("the map names {}, the channels are {}", fault.text,
                         fmt::join(fault.layout->labels, " "));
    case Kind::kTwice:
      return fmt::format("the map names {} twice", fault.text);
    case Kind::kEmptyGroup:
      return fmt::format("the map \"{}\" has an empty group", fault.text);
    case Kind::kMissing:
      return fmt::format("the map lacks {}", fault.text);
  }
  return {};
}

// What words about the part begin with.
std::string beginning(const Refusal& refusal) {
  using enum Refusal::Where;
  switch (refusal.where) {
    case kInStrip:
      return "";
    case kInBands:
      return "eq: ";
    case kInBand:
      return fmt::format("eq band {}: ", refusal.band);
    case kInCompressor:
      return "compressor.";
    case kInExpander:
      return "expander.";
    case kInDetector:
      return "detector.";
    case kInKeyFilter:
      return "key filter: ";
    case kInLinks:
      return "link: ";
  }
  return {};
}

}  // namespace

std::string words_of(const Refusal& refusal) {
  return beginning(refusal) +
         std::visit([](const auto& why) { return words_of(why); }, refusal.why);
}

void require_possible(const StripSettings& settings, double sample_rate,
                      const ChannelLayout& layout) {
  const auto refusal = refusal_of(settings, sample_rate, layout);
  if (refusal) refuse("{}", words_of(*refusal));
}

}  // namespace channelstrip::host
