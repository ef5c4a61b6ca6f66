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
#include "filter_parameters.h"
#include "number_text.h"
#include "refuse.h"

namespace channelstrip::host {
namespace {

struct FilterType {
  std::string_view name;
  BandType band;
  std::optional<double> q = std::nullopt;  // unless given
  bool corner = false;                     // of a shelf: the frequency is not the midpoint
};

constexpr FilterType kTypes[] = {
    {"PK", BandType::kPeak},
    {"PEQ", BandType::kPeak},
    {"MODAL", BandType::kPeak},
    {"LP", BandType::kLowPass, std::numbers::sqrt2 / 2},
    {"LPQ", BandType::kLowPass, std::numbers::sqrt2 / 2},
    {"HP", BandType::kHighPass, std::numbers::sqrt2 / 2},
    {"HPQ", BandType::kHighPass, std::numbers::sqrt2 / 2},
    {"BP", BandType::kBandPass, std::numbers::sqrt2 / 2},
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

bool is_shelf(BandType type) {
  return type == BandType::kLowShelf || type == BandType::kHighShelf;
}

// Six digits are more than any filter is set to, and as many as people read.
double rounded(double value) {
  return std::strtod(fmt::format("{:.6g}", value).c_str(), nullptr);
}

void set_shelf(BandSettings& band, const FilterType& type, const FilterParameters& parameters) {
  if (parameters.q) return;
  band.shelf_slope = rounded(parameters.slope.value_or(kShelfSlope * kSteepest) / kSteepest);
  if (!(*band.shelf_slope > 0)) refuse("the slope is not above 0");
  if (!type.corner) return;
  band.frequency = rounded(shelf_midpoint(band.type, band.frequency, band.gain, *band.shelf_slope));
}

}  // namespace

BandSettings parse_filter(std::string_view definition) {
  const std::vector<std::string> words = capital_words(definition);
  if (words.empty()) refuse("no filter type");
  const auto type = std::ranges::find(kTypes, words.front(), &FilterType::name);
  if (type == std::end(kTypes)) refuse("a strip has no filter {}", words.front());
  const bool shelf = is_shelf(type->band);
  const bool by_slope = shelf && !type->name.ends_with('Q');
  const bool has_gain = shelf || type->band == BandType::kPeak;

  const FilterParameters parameters = read_filter_parameters(std::span(words).subspan(1));
  if (parameters.slope && (!by_slope || parameters.q)) refuse("a slope besides Q or of no shelf");
  if (!parameters.frequency) refuse("the frequency is missing");
  if (has_gain && !parameters.gain) refuse("the gain is missing");
  if (!by_slope && !parameters.q && !type->q) refuse("neither Q nor bandwidth");

  BandSettings band{.type = type->band};
  band.frequency = *parameters.frequency;
  if (has_gain) band.gain = *parameters.gain;
  if (parameters.q || type->q) band.q = rounded(parameters.q ? *parameters.q : *type->q);
  if (shelf) set_shelf(band, *type, parameters);
  return band;
}

}  // namespace channelstrip::host
