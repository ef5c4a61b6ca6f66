#include "parameters.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace channelstrip::host {
namespace {

// Appends to a text that ends in zeros.
template <std::size_t Size>
void append(char (&text)[Size], std::string_view more) {
  const std::size_t end = std::strlen(text);
  more.copy(text + end, Size - 1 - end);
}

// "auto_makeup" as "auto makeup" or "Auto makeup"; "q" is always a capital.
template <std::size_t Size>
void append_words(char (&text)[Size], std::string_view key, bool capital) {
  capital = capital || key == "q";
  for (char c : key) {
    if (c == '_') c = ' ';
    if (capital) c = static_cast<char>(c - 'a' + 'A');
    capital = false;
    append(text, std::string_view(&c, 1));
  }
}

// Nothing is switched on by itself, and what a value that is absent stands for is 0 or, of a gate's
// hysteresis, a usual one.
double initial_of(const Key<EqBand>& key) {
  return key.switches ? 0 : key.access.get({}).value_or(0);
}
double initial_of(const Key<StripSettings>& key) {
  constexpr double kUsualHysteresis = 6;  // dB
  return key.switches ? 0 : key.access.get({}).value_or(kUsualHysteresis);
}

template <class Settings>
Parameter made(std::size_t group, const Key<Settings>& key) {
  const ParameterGroup& in = kGroups[group];
  Parameter p;
  p.id = 100 * in.number + static_cast<std::uint32_t>(key.number);
  p.kind = key.access.kind;
  p.lasting = key.lasting;
  p.group = group;
  p.key = key.name;
  p.unit = key.range.unit;
  p.meaning = key.meaning;
  p.words = key.words;
  p.initial = initial_of(key);
  if (p.kind == Kind::kWord) p.maximum = static_cast<double>(key.words.size() - 1);
  if (p.kind != Kind::kNumber) p.step = 1;
  if (p.kind == Kind::kNumber) {
    const bool may_lack = key.name == "shelf_slope";
    p.minimum = key.range.or_zero || may_lack ? 0 : key.range.minimum;
    p.maximum = key.range.maximum == kInfinity ? kInfiniteRatio : key.range.maximum;
    p.step = key.range.step;
    if (p.minimum < key.range.minimum) p.least_above_zero = key.range.minimum;
    const bool is_ratio = key.name == "ratio" || key.name == "q";
    if (p.unit == "Hz" || p.unit == "ms" || is_ratio) p.scale = SliderScale::kLogarithmic;
  }
  if constexpr (std::is_same_v<Settings, EqBand>) {
    p.band_key = &key;
  } else {
    p.strip_key = &key;
  }
  append(p.symbol, in.table);
  if (group >= kFirstBandGroup && group < kKeyFilterGroup) append(p.symbol, in.short_title);
  if (!in.table.empty()) append(p.symbol, "_");
  append(p.symbol, key.name);
  if (group > 0) {
    append(p.name, in.title);
    append(p.name, " ");
    append(p.short_name, in.short_title);
    append(p.short_name, " ");
  }
  append_words(p.name, key.name, group == 0);
  append(p.short_name, key.short_name);
  return p;
}

using ParameterTable = std::array<Parameter, kParameterCount>;

ParameterTable made_table() {
  ParameterTable table;
  std::size_t next = 0;
  const auto add = [&](std::size_t group, const auto& keys) {
    for (const auto& key : keys) table[next++] = made(group, key);
  };
  add(0, kTopKeys);
  for (std::size_t band = 0; band < kBandCount; ++band) add(kFirstBandGroup + band, kBandKeys);
  add(kKeyFilterGroup, kKeyFilterKeys);
  std::size_t group = kKeyFilterGroup;
  add(++group, kCompressorKeys);
  add(++group, kExpanderKeys);
  add(++group, kDetectorKeys);
  add(++group, kKeyKeys);
  add(++group, kMeterKeys);
  add(++group, kLinkKeys);
  return table;
}

// Made before main(), so that no thread waits for it.
const ParameterTable kTable = made_table();

template <class Matches>
std::optional<std::size_t> find(Matches matches) {
  const auto found = std::ranges::find_if(kTable, matches);
  if (found == kTable.end()) return std::nullopt;
  return static_cast<std::size_t>(found - kTable.begin());
}

// Where a logarithmic scale begins whose least value is 0; below this it is nearly straight.
constexpr double kFoot = 1;

}  // namespace

std::span<const Parameter, kParameterCount> parameters() {
  return kTable;
}

std::optional<std::size_t> index_of(std::uint32_t id) {
  return find([id](const Parameter& p) { return p.id == id; });
}

std::optional<std::size_t> index_of(std::string_view symbol) {
  return find([symbol](const Parameter& p) { return symbol == p.symbol; });
}

std::optional<std::size_t> index_of(std::size_t group, std::string_view key) {
  return find([=](const Parameter& p) { return p.group == group && p.key == key; });
}

double nearest_value(const Parameter& p, double value) {
  value = std::clamp(value, p.minimum, p.maximum);
  if (p.step > 0) value = std::round(value / p.step) * p.step;
  if (p.least_above_zero > 0 && value < p.least_above_zero) value = 0;
  return value + 0.0;  // without a minus before 0
}

double position_of(const Parameter& p, double value) {
  value = nearest_value(p, value);
  if (p.scale == SliderScale::kLinear) return (value - p.minimum) / (p.maximum - p.minimum);
  if (p.minimum > 0) return std::log(value / p.minimum) / std::log(p.maximum / p.minimum);
  return std::log1p(value / kFoot) / std::log1p(p.maximum / kFoot);
}

double value_at(const Parameter& p, double position) {
  position = std::clamp(position, 0.0, 1.0);
  if (position == 1) return p.maximum;
  double value = p.minimum + position * (p.maximum - p.minimum);
  if (p.scale == SliderScale::kLogarithmic) {
    value = p.minimum > 0 ? p.minimum * std::pow(p.maximum / p.minimum, position)
                          : kFoot * std::expm1(position * std::log1p(p.maximum / kFoot));
  }
  return nearest_value(p, value);
}

}  // namespace channelstrip::host
