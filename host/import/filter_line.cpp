#include "filter_line.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <numbers>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace channelstrip::host {
namespace {

template <typename... Arguments>
[[noreturn]] void refuse(fmt::format_string<Arguments...> format, Arguments&&... arguments) {
  throw std::invalid_argument(fmt::format(format, std::forward<Arguments>(arguments)...));
}

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

bool is_digit(char c) {
  return '0' <= c && c <= '9';
}

// Words in capitals; a unit that sticks to its number is a word of its own.
std::vector<std::string> words(std::string_view text) {
  std::vector<std::string> result;
  char previous = ' ';
  for (const char c : text) {
    const bool blank = c == ' ' || c == '\t';
    const bool unit = is_digit(previous) && (c == 'd' || c == 'D' || c == 'h' || c == 'H');
    if (!blank) {
      if (previous == ' ' || unit) result.emplace_back();
      result.back() += 'a' <= c && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    }
    previous = blank ? ' ' : c;
  }
  return result;
}

// What a number's separators say about which of '.' and ',' is the decimal one; 0: nothing.
char decimal_separator(std::string_view number) {
  const std::size_t last = number.find_last_of(".,");
  if (last == number.npos) return 0;
  const bool both = number.find(number[last] == '.' ? ',' : '.') != number.npos;
  const bool thousands = number.size() - last == 4;
  return both || !thousands ? number[last] : char{0};
}

double plain_number(std::string_view what, std::string text) {
  std::ranges::replace(text, ',', '.');
  const std::size_t sign = text.starts_with('+') ? 1 : 0;
  double value = 0;
  const auto [end, error] = std::from_chars(text.data() + sign, text.data() + text.size(), value);
  if (error != std::errc() || end != text.data() + text.size() || !std::isfinite(value)) {
    refuse("the {} \"{}\" is no number", what, text);
  }
  return value;
}

// `decimal` is the separator that other numbers of the line show, 0: they don't.
double frequency_number(std::string text, char decimal) {
  if (const char own = decimal_separator(text)) decimal = own;
  std::erase(text, decimal == ',' ? '.' : ',');
  return plain_number("frequency", std::move(text));
}

// Six digits are more than any filter is set to, and as many as people read.
double rounded(double value) {
  return std::strtod(fmt::format("{:.6g}", value).c_str(), nullptr);
}

// What stands behind the type, word by word.
struct Parameters {
  std::optional<double> slope = {};  // dB per octave
  std::optional<std::string> frequency = {};
  std::optional<double> gain = {};  // dB
  std::optional<double> q = {};
  char decimal = 0;
};

class Reader {
 public:
  explicit Reader(std::span<const std::string> words) : words_(words) {}

  Parameters read() {
    if (!words_.empty() && is_digit(words_.front().front())) {
      parameters_.slope = number("slope");
      skip("DB");
    }
    while (!words_.empty()) read_parameter();
    return parameters_;
  }

 private:
  void read_parameter() {
    const std::string first = words_.front();
    if (skip("FC")) {
      parameters_.frequency = word("frequency");
      skip("HZ");
    } else if (skip("GAIN")) {
      parameters_.gain = number("gain");
      skip("DB");
    } else if (skip("Q")) {
      parameters_.q = number("Q");
    } else if (skip("BW") && skip("OCT")) {
      parameters_.q = rounded(q_of_bandwidth(number("bandwidth")));
    } else if (skip("T60") && skip("TARGET")) {
      number("T60 target");
      skip("MS");
    } else {
      refuse("\"{}\" is not understood", first);
    }
  }

  bool skip(std::string_view expected) {
    if (words_.empty() || words_.front() != expected) return false;
    words_ = words_.subspan(1);
    return true;
  }

  std::string word(std::string_view what) {
    if (words_.empty()) refuse("the {} is missing", what);
    std::string text = words_.front();
    words_ = words_.subspan(1);
    return text;
  }

  double number(std::string_view what) {
    const std::string text = word(what);
    if (const char decimal = decimal_separator(text)) parameters_.decimal = decimal;
    return plain_number(what, text);
  }

  std::span<const std::string> words_;
  Parameters parameters_;
};

void set_shelf(BandSettings& band, const FilterType& type, const Parameters& parameters) {
  if (parameters.q) return;
  band.shelf_slope = rounded(parameters.slope.value_or(kShelfSlope * kSteepest) / kSteepest);
  if (!(*band.shelf_slope > 0)) refuse("the slope is not above 0");
  if (!type.corner) return;
  band.frequency = rounded(shelf_midpoint(band.type, band.frequency, band.gain, *band.shelf_slope));
}

}  // namespace

double q_of_bandwidth(double octaves) {
  if (!(octaves > 0)) refuse("the bandwidth is not above 0");
  return 1 / (2 * std::sinh(std::numbers::ln2 / 2 * octaves));
}

double shelf_midpoint(BandType shelf, double corner, double gain, double slope) {
  const double factor = std::pow(10, std::abs(gain) / (80 * slope));
  return shelf == BandType::kLowShelf ? corner * factor : corner / factor;
}

double parse_decibels(std::string_view text) {
  const std::vector<std::string> all = words(text);
  if (all.empty() || all.size() > 2 || (all.size() == 2 && all[1] != "DB")) {
    refuse("not a number of dB");
  }
  return plain_number("gain", all.front());
}

BandSettings parse_filter(std::string_view definition) {
  const std::vector<std::string> all = words(definition);
  if (all.empty()) refuse("no filter type");
  const auto type = std::ranges::find(kTypes, all.front(), &FilterType::name);
  if (type == std::end(kTypes)) refuse("a strip has no filter {}", all.front());
  const bool shelf = is_shelf(type->band);
  const bool by_slope = shelf && !type->name.ends_with('Q');
  const bool has_gain = shelf || type->band == BandType::kPeak;

  const Parameters parameters = Reader(std::span(all).subspan(1)).read();
  if (parameters.slope && (!by_slope || parameters.q)) refuse("a slope besides Q or of no shelf");
  if (!parameters.frequency) refuse("the frequency is missing");
  if (has_gain && !parameters.gain) refuse("the gain is missing");
  if (!by_slope && !parameters.q && !type->q) refuse("neither Q nor bandwidth");

  BandSettings band{.type = type->band};
  band.frequency = frequency_number(*parameters.frequency, parameters.decimal);
  if (has_gain) band.gain = *parameters.gain;
  if (parameters.q || type->q) band.q = rounded(parameters.q ? *parameters.q : *type->q);
  if (shelf) set_shelf(band, *type, parameters);
  return band;
}

}  // namespace channelstrip::host
