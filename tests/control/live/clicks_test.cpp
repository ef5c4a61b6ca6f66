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
};

// Two seconds; the parameter changes after one, in calls of 64 frames.
Played play(const Values& from, std::size_t parameter, double to) {
  static const ChannelLayout mono = default_layout(*find_stem_format("Mono"));
  ControlledStrip strip(entry_points(), mono, kLiveRate, from);
  const std::vector<float> input = sine(kPeak, 220, kLiveRate, 2 * kSecond);
  Played played{.output = std::vector<float>(input.size())};
  for (std::size_t at = 0; at < input.size(); at += 64) {
    const float* const inputs[] = {input.data() + at};
    float* const outputs[] = {played.output.data() + at};
    const ControlledStrip::Event event{at == kSecond + 640 ? 5u : 0u, parameter, to};
    const bool is_now = at == kSecond + 640;
    strip.process({.inputs = inputs,
                   .key = inputs[0],
                   .outputs = outputs,
                   .frames = 64,
                   .events = std::span(&event, is_now ? 1u : 0u)});
  }
  return played;
}

std::vector<double> ends_of(const Parameter& p, double present) {
  std::vector<double> ends;
  if (p.kind == Kind::kWord) {
    for (std::size_t i = 0; i < p.words.size(); ++i) ends.push_back(static_cast<double>(i));
  } else {
    ends = {p.minimum, value_at(p, 0.3), value_at(p, 0.6), p.maximum};
  }
  std::erase(ends, present);
  return ends;
}

TEST(NoClick, ComesFromAnyParameter) {
  const Values busy = busy_values();
  for (std::size_t i = 0; i < kParameterCount; ++i) {
    const Parameter& p = parameters()[i];
    if (p.group > kFirstBandGroup + 3 && p.group < kKeyFilterGroup) continue;  // as the others
    for (const double to : ends_of(p, busy.of[i])) {
      Values from = busy;
      for (const bool back : {false, true}) {
        from.of[i] = back ? to : busy.of[i];
        const Played played = play(from, i, back ? busy.of[i] : to);
        const double steady =
            std::max(played.greatest_corner(kSecond / 2, kSecond),
                     played.greatest_corner(2 * kSecond - kSecond / 4, 2 * kSecond));
        const double change = played.greatest_corner(kSecond, 2 * kSecond);
        const double excess = (change - steady) / played.peak() * kTimeConstant;
        const double gain = p.key == "gain" ? std::max(1.0, db_to_linear(to)) : 1;
        EXPECT_LE(excess, 4 * gain) << p.symbol << (back ? " from " : " to ") << to;
      }
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::clicks_test
