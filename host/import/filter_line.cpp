#include "filter_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <numbers>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "analog_band.h"
#include "control/design/band.h"
#include "control/design/refuse.h"
#include "filter_parameters.h"
#include "number_text.h"

namespace channelstrip::host {
namespace {

struct FilterType {
  std::string_view name;
  BandType band;
  std::optional<double> q = std::nullopt;  // the default
  bool corner = false;                     // of a shelf: the frequency is not the midpoint
  int slope = 12;                          // of a pass, dB per octave
};

constexpr double kButterworth = std::numbers::sqrt2 / 2;

constexpr FilterType kTypes[] = {
    {"PK", BandType::kPeak},
    {"PEQ", BandType::kPeak},
    {"MODAL", BandType::kPeak},
    {"LP", BandType::kLowPass, kButterworth},
    {"LPQ", BandType::kLowPass, kButterworth},
    {"LP1", BandType::kLowPass, kButterworth, false, 6},
    {"HP", BandType::kHighPass, kButterworth},
    {"HPQ", BandType::kHighPass, kButterworth},
    {"HP1", BandType::kHighPass, kButterworth, false, 6},
    {"BP", BandType::kBandPass, kButterworth},
    {"NO", BandType::kNotch, 30},
    {"AP", BandType::kAllPass},
    {"LS", BandType::kLowShelf, std::nullopt, true},
    {"HS", BandType::kHighShelf, std::nullopt, true},
    {"LSC", BandType::kLowShelf},
    {"HSC", BandType::kHighShelf},
    {"LSQ", BandType::kLowShelf},
    {"HSQ", BandType::kHighShelf},
};

constexpr double kShelfSlope = 0.9;  // S of a shelf without slope and Q
constexpr double kSteepest = 12;     // dB per octave at S = 1

// To six digits, which is finer than any filter is set and still easy to read.
double rounded(double value) {
  return std::strtod(fmt::format("{:.6g}", value).c_str(), nullptr);
}

void require_parameters(const FilterType& type, const FilterParameters& given) {
  const bool shelf = type.band == BandType::kLowShelf || type.band == BandType::kHighShelf;
  const bool by_slope = shelf && !type.name.ends_with('Q');
  const bool narrowness = given.q || given.bandwidth;
  if (given.slope && (!by_slope || narrowness)) refuse("a slope besides Q or of no shelf");
  if (shelf && given.bandwidth) refuse("a shelf has no bandwidth");
  if (type.slope != 12 && narrowness) refuse("a pass of {} dB per octave has no Q", type.slope);
  if (!given.frequency) refuse("the frequency is missing");
  if (uses_gain({.type = type.band}) && !given.gain) refuse("the gain is missing");
  if (!by_slope && !narrowness && !type.q) refuse("neither Q nor bandwidth");
}

// A Q given beside a bandwidth describes the same filter, and at any sample rate, so it is used.
std::optional<double> q_of(const FilterType& type, const FilterParameters& given) {
  if (given.q) return given.q;
  return given.bandwidth ? q_of_bandwidth(*given.bandwidth) : type.q;
}

// Without a Q the band is a shelf by slope.
void set_shelf_slope(BandSettings& band, const FilterParameters& given) {
  band.shelf_slope = rounded(given.slope.value_or(kShelfSlope * kSteepest) / kSteepest);
  if (!(*band.shelf_slope > 0)) refuse("the slope is not above 0");
}

}  // namespace

BandSettings parse_filter(std::string_view definition) {
  const std::vector<std::string> words = capital_words(definition);
  if (words.empty()) refuse("no filter type");
  const auto type = std::ranges::find(kTypes, words.front(), &FilterType::name);
  if (type == std::end(kTypes)) refuse("a strip has no filter {}", words.front());
  const FilterParameters given = read_filter_parameters(std::span(words).subspan(1));
  require_parameters(*type, given);

  BandSettings band{.type = type->band, .frequency = *given.frequency, .slope = type->slope};
  if (uses_gain(band)) band.gain = *given.gain;
  if (const auto q = q_of(*type, given)) {
    band.q = rounded(*q);
  } else {
    set_shelf_slope(band, given);
  }
  if (type->corner) {
    const double slope = band.shelf_slope ? *band.shelf_slope : slope_of_q(band.q, band.gain);
    band.frequency = rounded(shelf_midpoint(band.type, band.frequency, band.gain, slope));
  }
  return band;
}

}  // namespace channelstrip::host
