// Every key of every table, with values throughout its range and outside.

#include <fmt/format.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "control/preset/preset_keys.h"
#include "refusal.h"

namespace channelstrip::test::key_range_test {
namespace {

using namespace host;

// A key: its path, how to read its value from the settings, and assignments that must come before
// it so that it applies.
struct AnyKey {
  std::string path;
  Kind kind;
  Range range;
  std::span<const std::string_view> words;
  std::function<Value(const StripSettings&)> get;
  std::vector<std::string> before = {};
};

// A band type to which the key applies.
std::string_view apt_type(const Key<EqBand>& key) {
  for (std::size_t type = 0; type < std::size(kBandTypes); ++type) {
    EqBand band;
    band.type = static_cast<BandType>(type);
    if (!key.objection || key.objection(band).empty()) return kBandTypes[type];
  }
  return "";
}

// The value of a band's key in the settings; the band's position is the list that it is in.
Value of_band(const Key<EqBand>& key, const StripSettings& settings, bool key_filter) {
  if (key.switches) {
    return key_filter ? settings.key_filter.has_value() : !settings.pre.empty();
  }
  EqBand band;
  static_cast<BandSettings&>(band) = key_filter              ? *settings.key_filter
                                     : settings.post.empty() ? settings.pre.at(0)
                                                             : settings.post.at(0);
  band.position = settings.post.empty() ? Position::kPre : Position::kPost;
  return key.access.get(band);
}

// Whether what the key switches is there.
Value of_switch(std::string_view table, std::string_view key, const StripSettings& settings) {
  if (key == "gate") return settings.expander->hysteresis.has_value();
  return table == "compressor" ? settings.compressor.has_value() : settings.expander.has_value();
}

std::vector<AnyKey> every_key() {
  std::vector<AnyKey> result;
  for (const Table& table : kTables) {
    for (const auto& key : table.keys) {
      const std::string_view dot = table.name.empty() ? "" : ".";
      result.push_back({fmt::format("{}{}{}", table.name, dot, key.name), key.access.kind,
                        key.range, key.words, key.access.get});
      if (!key.switches) continue;
      result.back().get = [table = table.name, name = key.name](const StripSettings& settings) {
        return of_switch(table, name, settings);
      };
      result.back().before = {"expander.hysteresis=3"};
    }
  }
  const auto add_band = [&](std::string_view table, std::span<const Key<EqBand>> keys) {
    for (const Key<EqBand>& key : keys) {
      const bool key_filter = table == "key_filter";
      const Range range =
          key_filter && key.name == "slope" ? Range{"dB/oct", 6, 12, false, 6} : key.range;
      result.push_back({fmt::format("{}.{}", table, key.name),
                        key.access.kind,
                        range,
                        key.words,
                        [&key, key_filter](const StripSettings& settings) {
                          return of_band(key, settings, key_filter);
                        },
                        {fmt::format("{}.type={}", table, apt_type(key))}});
    }
  };
  add_band("eq.1", kBandKeys);
  add_band("key_filter", kKeyFilterKeys);
  return result;
}

StripSettings with(const AnyKey& key, const std::string& value) {
  std::vector<std::string> assignments = key.before;
  assignments.push_back(fmt::format("{}={}", key.path, value));
  return load_preset(std::nullopt, assignments).settings;
}

// A random value within the range; one without an upper end is taken up to 1e6.
double within(const Range& range) {
  if (range.or_zero && *rc::gen::inRange(0, 10) == 0) return 0;
  const double top = std::min(range.maximum, 1e6);
  if (range.step > 0) {
    const int steps = static_cast<int>((top - range.minimum) / range.step);
    return range.minimum + range.step * *rc::gen::inRange(0, steps + 1);
  }
  constexpr int kSteps = 1 << 20;  // both ends included
  return range.minimum + (top - range.minimum) * *rc::gen::inRange(0, kSteps + 1) / kSteps;
}

double outside(const Range& range) {
  const double distance = *rc::gen::inRange(1, 1 << 20) * std::ldexp(1.0, -12);
  const bool above = std::isfinite(range.maximum) && *rc::gen::arbitrary<bool>();
  const double value = above ? range.maximum + distance : range.minimum - distance;
  return range.or_zero && value == 0 ? -distance : value;
}

// A random valid value, as written and as the settings then hold it.
std::pair<std::string, double> any_value(const AnyKey& key) {
  if (key.kind == Kind::kNumber) {
    const double value = within(key.range);
    return {fmt::format("{}", value), value};
  }
  if (key.kind == Kind::kSwitch) {
    const bool value = *rc::gen::arbitrary<bool>();
    return {fmt::format("{}", value), value ? 1 : 0};
  }
  const auto index = *rc::gen::inRange<std::size_t>(0, key.words.size());
  return {std::string(key.words[index]), static_cast<double>(index)};
}

RC_GTEST_PROP(EveryKey, TakesWhatLiesWithinItsRange, ()) {
  for (const AnyKey& key : every_key()) {
    const auto [text, value] = any_value(key);
    RC_LOG() << key.path << " = " << text << '\n';
    RC_ASSERT(key.get(with(key, text)) == value);
  }
}

RC_GTEST_PROP(EveryKey, RefusesWhatLiesOutsideAndSaysTheRange, ()) {
  for (const AnyKey& key : every_key()) {
    if (key.kind != Kind::kNumber || key.path == "key_filter.slope") continue;
    const std::string value = fmt::format("{}", outside(key.range));
    RC_LOG() << key.path << " = " << value << '\n';
    const std::string what =
        fmt::format("--set {}={}: must be {}{}{}", key.path, value, limits(key.range),
                    key.range.unit.empty() ? "" : " ", key.range.unit);
    const std::string reason = key.path == "compressor.ratio"
                                   ? ": a compressor never makes louder what is above its threshold"
                                   : "";
    RC_ASSERT(refusal([&] { with(key, value); }) == what + reason);
  }
}

TEST(EveryKey, HasAMeaning) {
  for (const Table& table : kTables) {
    EXPECT_FALSE(table.meaning.empty());
    for (const auto& key : table.keys) EXPECT_FALSE(key.meaning.empty()) << key.name;
  }
  for (const Key<EqBand>& key : kBandKeys) EXPECT_FALSE(key.meaning.empty()) << key.name;
}

// Otherwise a default could not be written in a preset.
TEST(EveryKey, HasADefaultWithinItsRange) {
  for (const AnyKey& key : every_key()) {
    if (key.kind != Kind::kNumber || !key.before.empty()) continue;
    const Value value = key.get({});
    EXPECT_TRUE(!value || key.range.contains(*value)) << key.path;
  }
  for (const Key<EqBand>& key : kBandKeys) {
    const Value value = key.access.get({});
    EXPECT_TRUE(key.access.kind != Kind::kNumber || !value || key.range.contains(*value))
        << key.name;
  }
}

}  // namespace
}  // namespace channelstrip::test::key_range_test
