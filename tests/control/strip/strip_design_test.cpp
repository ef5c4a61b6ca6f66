// Coefficients of settings that change are those of a design from scratch.

#include "control/strip/strip_design.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

#include "control/parameters/values.h"

namespace channelstrip::test::strip_design_test {
namespace {

using namespace host;

template <class Record>
bool same_bits(const Record& a, const Record& b) {
  return std::memcmp(&a, &b, sizeof(Record)) == 0;
}

void expect_same(const StripCoefficients& changed, const StripCoefficients& designed) {
  EXPECT_TRUE(same_bits(changed.eq, designed.eq));
  EXPECT_TRUE(same_bits(changed.dynamics, designed.dynamics));
  EXPECT_EQ(changed.dezip_rate, designed.dezip_rate);
  EXPECT_EQ(changed.mix.gain_in, designed.mix.gain_in);
  EXPECT_EQ(changed.mix.gain_out, designed.mix.gain_out);
  EXPECT_EQ(changed.mix.mix, designed.mix.mix);
  EXPECT_EQ(changed.mix.weight, designed.mix.weight);
  EXPECT_EQ(changed.mix.bypass, designed.mix.bypass);
}

// Up to `count` parameters get another value, low frequencies more often than not.
void change(Values& values, std::minstd_rand& random, std::size_t count) {
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t index = random() % kParameterCount;
    const Parameter& p = parameters()[index];
    const double position = static_cast<double>(random() % 1001) / 1000;
    values.of[index] = value_at(p, p.key == "frequency" ? position / 3 : position);
  }
}

TEST(StripDesign, OfChangesIsTheDesignFromScratch) {
  const ChannelLayout layout = default_layout(*find_stem_format("5.1"));
  std::minstd_rand random(3);
  for (const double rate : {44100.0, 192000.0}) {
    Values values;
    StripDesign design(settings_of(values, rate), rate, layout);
    for (int i = 0; i < 200; ++i) {
      change(values, random, 1 + random() % 20);
      design.change(settings_of(values, rate));
      if (i % 3 == 0) {  // the next change interrupts a search
        for (auto step = random() % 50; step > 0; --step) design.step();
        continue;
      }
      design.finish_searches();
      SCOPED_TRACE(i);
      expect_same(design.coefficients(), design_strip(settings_of(values, rate), rate, layout));
    }
  }
}

TEST(StripDesign, PlaysARoundedBandUntilItsSearchIsDone) {
  const ChannelLayout layout = default_layout(*find_stem_format("Mono"));
  StripSettings low;
  low.pre = {{.type = BandType::kNotch, .frequency = 50, .q = 30}};
  StripSettings lower = low;
  lower.pre[0].frequency = 40;
  StripDesign design(low, 192000, layout);
  EXPECT_FALSE(design.is_searching());
  design.change(lower);
  EXPECT_TRUE(design.is_searching());
  const EQ_SCoefs rounded = design.coefficients().eq;
  bool has_changed = false;
  int steps = 0;
  for (; design.is_searching(); ++steps) {
    EXPECT_TRUE(has_changed || same_bits(design.coefficients().eq, rounded));
    has_changed = design.step() || has_changed;
  }
  EXPECT_TRUE(has_changed);
  EXPECT_FALSE(same_bits(design.coefficients().eq, rounded));
  EXPECT_GT(steps, 10);
}

}  // namespace
}  // namespace channelstrip::test::strip_design_test
