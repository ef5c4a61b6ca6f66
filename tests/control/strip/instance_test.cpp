#include "control/strip/instance.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <vector>

#include "control/library/library.h"

namespace channelstrip::test::instance_test {
namespace {

using namespace host;

StripCoefficients coefficients(double gain) {
  StripSettings settings;
  settings.pre = {{.frequency = 500, .gain = gain}};
  settings.compressor = {.range = -gain, .makeup = gain};
  settings.expander = {.range = -2 * gain, .hysteresis = 6};
  return design_strip(settings, 48000, default_layout(*find_stem_format("LCR")));
}

const SChannelStrip_Alg_Context& context_of(Instance& instance) {
  return *instance.prepare(nullptr, nullptr, 0);
}

TEST(Instance, StartsWhereItsCoefficientsAre) {
  const StripCoefficients wanted = coefficients(9);
  Instance instance(*find_stem_format("LCR"), wanted);
  const SChannelStrip_Alg_Context& context = context_of(instance);
  EXPECT_TRUE(std::ranges::equal(context.eqDezipCoefs->coefs, wanted.eq.targetCoefs));
  EXPECT_TRUE(std::ranges::equal(context.eqDezipCoefs->smoothedCoefs, wanted.eq.targetCoefs));
  EXPECT_EQ(context.dynState[0].dezipRate, wanted.dezip_rate);
  for (int c = 0; c < 3; ++c) {
    const Dyn_SState& state = context.dynState[c];
    EXPECT_EQ(state.curMakeupGain, wanted.dynamics.makeupGain);
    EXPECT_EQ(state.curCompRange, wanted.dynamics.compRange);
    EXPECT_EQ(state.curExpRange, wanted.dynamics.expRange);
    EXPECT_EQ(state.compGain, 0);
    EXPECT_EQ(state.expGain, 0);
    EXPECT_EQ(state.gateOpen, 1);
  }
}

TEST(Instance, NewCoefficientsAreTargetsAlone) {
  const StripCoefficients before = coefficients(9), after = coefficients(3);
  Instance instance(*find_stem_format("LCR"), before);
  instance.set_coefficients(after);
  const SChannelStrip_Alg_Context& context = context_of(instance);
  EXPECT_TRUE(std::ranges::equal(context.eqTargetCoefs->targetCoefs, after.eq.targetCoefs));
  EXPECT_EQ(context.dynCoefs->makeupGain, after.dynamics.makeupGain);
  EXPECT_TRUE(std::ranges::equal(context.eqDezipCoefs->smoothedCoefs, before.eq.targetCoefs));
  EXPECT_EQ(context.dynState[0].curMakeupGain, before.dynamics.makeupGain);
}

TEST(Instance, MetersBeginAnewWhenReset) {
  const Library library(CHANNELSTRIP_LIBRARY);
  const StemFormat& format = *find_stem_format("LCR");
  Instance instance(format, coefficients(0));
  const std::vector<float> input(16, 0.5f);
  const float* const inputs[] = {input.data(), input.data(), input.data()};
  std::vector<float> left(16), right(16), centre(16);
  float* const outputs[] = {left.data(), right.data(), centre.data()};
  const SChannelStrip_Alg_Context* context = instance.prepare(inputs, outputs, 16);
  library.entry_point(format)(&context, &context + 1);

  const auto every = [](std::span<const float> values, float expected) {
    return values.size() == 3 && std::ranges::count(values, expected) == 3;
  };
  EXPECT_TRUE(every(instance.meters().input_peak, 0.5f));
  EXPECT_FALSE(every(instance.meters().output_peak, 0));
  EXPECT_FALSE(every(instance.meters().channel_gain, 0));
  EXPECT_GT(instance.meters().gain, 0);
  EXPECT_EQ(instance.meters().level, 0.5f);
  instance.reset_meters();
  EXPECT_TRUE(every(instance.meters().input_peak, 0));
  EXPECT_TRUE(every(instance.meters().output_peak, 0));
  EXPECT_TRUE(every(instance.meters().channel_gain, 0));
  EXPECT_EQ(instance.meters().gain, 0);
  EXPECT_EQ(instance.meters().level, 0);
}

}  // namespace
}  // namespace channelstrip::test::instance_test
