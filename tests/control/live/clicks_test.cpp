// Nothing clicks, whatever is changed while a sine plays.
//
// A click is a step or a corner, and the second difference of the samples shows both. That of a
// steady sine is small. What a change may add: a gain that glides with the time constant T begins
// with a corner of its way / T, a cross-fade over 2 T samples with one of half that, and
// coefficients of the EQ step every four samples by up to 4 / T of their way. A step of 4 / T of a
// filter's gain lies between two samples, so the corner may be as great.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "control/design/dynamics.h"
#include "control/live/controlled_strip.h"
#include "tests/control/strip/live.h"

namespace channelstrip::test::clicks_test {
namespace {

using namespace host;

constexpr std::size_t kSecond = 48000;
constexpr double kTimeConstant = 960;  // samples, of a glide of 20 ms
constexpr double kPeak = 0.25;

void set(Values& values, std::string_view symbol, double value) {
  values.of[*index_of(symbol)] = value;
}

// Everything on, so that every parameter is heard.
Values busy_values() {
  Values values;
  set(values, "eq1_on", 1);
  set(values, "eq1_frequency", 300);
  set(values, "eq1_gain", 6);
  set(values, "eq2_on", 1);
  set(values, "eq2_type", 4);
  set(values, "eq2_frequency", 60);
  set(values, "eq2_slope", 24);
  set(values, "eq3_on", 1);
  set(values, "eq3_type", 2);
  set(values, "eq3_gain", -6);
  set(values, "eq3_position", 1);
  set(values, "key_filter_on", 1);
  set(values, "key_filter_frequency", 400);
  set(values, "key_filter_gain", 6);
  set(values, "compressor_on", 1);
  set(values, "compressor_threshold", -24);
  set(values, "compressor_ratio", 3);
  set(values, "expander_on", 1);
  set(values, "expander_threshold", -12);
  set(values, "expander_attack", 10);
  return values;
}

// What came out of one channel.
struct Played {
  std::vector<float> output;
  double greatest_corner(std::size_t begin, std::size_t end) const {
    double greatest = 0;
    for (std::size_t i = begin + 2; i < end; ++i) {
      const double second = static_cast<double>(output[i]) -
                            2 * static_cast<double>(output[i - 1]) +
                            static_cast<double>(output[i - 2]);
      greatest = std::max(greatest, std::abs(second));
    }
    return greatest;
  }
  double peak() const {
    float peak = 0;
    for (const float x : output) peak = std::max(peak, std::abs(x));
    return static_cast<double>(peak);
  }
  // Of the second second over the steady rest, as a gain's way in a time constant.
  double excess() const {
    const double steady = std::max(greatest_corner(kSecond / 2, kSecond),
                                   greatest_corner(2 * kSecond - kSecond / 4, 2 * kSecond));
    return (greatest_corner(kSecond, 2 * kSecond) - steady) / peak() * kTimeConstant;
  }
};

// Two seconds; the parameter changes after one, in calls of 64 frames. Each channel is 3 dB softer
// than the one before, so that it matters which are linked.
std::vector<Played> play(const ChannelLayout& layout, const Values& from, std::size_t parameter,
                         double to) {
  const std::size_t channels = layout.labels.size();
  ControlledStrip strip(entry_points(), layout, kLiveRate, from);
  std::vector<std::vector<float>> input;
  for (std::size_t c = 0; c < channels; ++c) {
    const double peak = kPeak * db_to_linear(-3 * static_cast<double>(c));
    input.push_back(sine(peak, 220, kLiveRate, 2 * kSecond));
  }
  std::vector<Played> played(channels, {.output = std::vector<float>(2 * kSecond)});
  std::vector<const float*> inputs(channels);
  std::vector<float*> outputs(channels);
  for (std::size_t at = 0; at < 2 * kSecond; at += 64) {
    for (std::size_t c = 0; c < channels; ++c) {
      inputs[c] = input[c].data() + at;
      outputs[c] = played[c].output.data() + at;
    }
    const ControlledStrip::Event event{at == kSecond + 640 ? 5u : 0u, parameter, to};
    const bool is_now = at == kSecond + 640;
    strip.process({.inputs = inputs.data(),
                   .key = inputs[0],
                   .outputs = outputs.data(),
                   .frames = 64,
                   .events = std::span(&event, is_now ? 1u : 0u)});
  }
  return played;
}

std::vector<double> ends_of(const Parameter& p, double present) {
  std::vector<double> ends;
  if (p.kind == host::Kind::kWord) {
    for (std::size_t i = 0; i < p.words.size(); ++i) ends.push_back(static_cast<double>(i));
  } else {
    ends = {p.minimum, value_at(p, 0.3), value_at(p, 0.6), p.maximum};
  }
  std::erase(ends, present);
  return ends;
}

// There and back.
void expect_no_click(const ChannelLayout& layout, const Parameter& p, std::size_t index,
                     double to) {
  Values from = busy_values();
  for (const bool back : {false, true}) {
    const double begin = back ? to : busy_values().of[index];
    const double end = back ? busy_values().of[index] : to;
    from.of[index] = begin;
    const double gain = p.key == "gain" ? std::max(1.0, db_to_linear(to)) : 1;
    const std::vector<Played> played = play(layout, from, index, end);
    for (std::size_t c = 0; c < played.size(); ++c) {
      EXPECT_LE(played[c].excess(), 4 * gain)
          << p.symbol << " from " << begin << " to " << end << ", " << layout.labels[c];
    }
  }
}

bool is_as_in_other_bands(const Parameter& p) {
  return p.group > kFirstBandGroup + 3 && p.group < kKeyFilterGroup;
}

TEST(NoClick, ComesFromAnyParameter) {
  const ChannelLayout mono = default_layout(*find_stem_format("Mono"));
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    const Parameter& p = parameters()[i];
    if (is_as_in_other_bands(p)) continue;
    for (const double to : ends_of(p, busy_values().of[i])) expect_no_click(mono, p, i, to);
  }
}

// What runs in all channels at once, and what links them.
TEST(NoClick, ComesFromAnyParameterInSurround) {
  const ChannelLayout surround = default_layout(*find_stem_format("5.1"));
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    const Parameter& p = parameters()[i];
    if (is_as_in_other_bands(p)) continue;
    std::vector<double> ends = ends_of(p, busy_values().of[i]);
    if (p.group != kGroups.size() - 1) ends = {ends.back()};  // all of the links'
    for (const double to : ends) expect_no_click(surround, p, i, to);
  }
}

}  // namespace
}  // namespace channelstrip::test::clicks_test
