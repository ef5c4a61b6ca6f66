#include "plugins/view/monitor.h"

#include <gtest/gtest.h>

#include <cmath>

#include "played.h"

namespace channelstrip::view_monitor_test {
namespace {

using view::GateState;

view::Setup gate() {
  return view::setup_of(view_test::preset("drum_bus").get(), plugin_test::format_of("Stereo"),
                        plugin_test::kRate);
}

channelstrip_meters meters(float peak) {
  channelstrip_meters read{};
  read.input_peak[0] = read.output_peak[1] = peak;
  return read;
}

TEST(Monitor, HoldsAPeakForThreeSeconds) {
  view::Monitor monitor(2, plugin_test::kRate);
  const view::Setup setup = gate();
  const channelstrip_meters loud = meters(0.5f);
  monitor.advance(0.02, &loud, setup);
  const auto& input = monitor.live().inputs[0];
  EXPECT_NEAR(input.level, -6.02, 0.01);
  for (int i = 0; i < 145; ++i) monitor.advance(0.02, nullptr, setup);
  EXPECT_NEAR(input.hold, -6.02, 0.01);
  EXPECT_NEAR(input.level, -6.02 - 2.9 / 1.7 * 20, 0.1);
  for (int i = 0; i < 10; ++i) monitor.advance(0.02, nullptr, setup);
  EXPECT_LT(input.hold, -35);
  EXPECT_LT(monitor.live().inputs[1].hold, -100);
}

TEST(Monitor, CountsOversUntilTheyAreCleared) {
  view::Monitor monitor(2, plugin_test::kRate);
  channelstrip_meters read = meters(1.5f);
  read.overs[1] = 3;
  monitor.advance(0.02, &read, gate());
  monitor.advance(0.02, &read, gate());
  EXPECT_EQ(monitor.live().outputs[1].overs, 6U);
  EXPECT_EQ(monitor.live().outputs[0].overs, 0U);
  for (int i = 0; i < 20; ++i) monitor.advance(0.02, nullptr, gate());
  monitor.clear_holds();
  EXPECT_EQ(monitor.live().outputs[1].overs, 0U);
  EXPECT_EQ(monitor.live().outputs[1].hold, monitor.live().outputs[1].level);
}

// Opens at -36 dB, shuts at -44 dB.
TEST(Monitor, FollowsAGateByItsTwoThresholds) {
  view::Monitor monitor(2, plugin_test::kRate);
  const view::Setup setup = gate();
  const auto state_after = [&](double level, float gain) {
    channelstrip_meters read{};
    read.detector_level[0] = static_cast<float>(std::pow(10, level / 20));
    read.expander_gain[0] = gain;
    monitor.advance(0.02, &read, setup);
    return monitor.live().gate;
  };
  EXPECT_EQ(state_after(-60, -30), GateState::kClosed);
  EXPECT_EQ(state_after(-40, -30), GateState::kClosed);
  EXPECT_EQ(state_after(-35, -20), GateState::kOpen);
  EXPECT_EQ(state_after(-43, 0), GateState::kOpen);
  EXPECT_EQ(state_after(-45, 0), GateState::kHeld);
  EXPECT_EQ(state_after(-43, 0), GateState::kOpen);
  EXPECT_EQ(state_after(-45, 0), GateState::kHeld);
  EXPECT_EQ(state_after(-45, -4), GateState::kClosed);
  EXPECT_EQ(state_after(-43, -9), GateState::kClosed);
}

TEST(Monitor, RemembersSixSecondsByTheirDeepestReductions) {
  view::Monitor monitor(2, plugin_test::kRate);
  const view::Setup setup = gate();
  channelstrip_meters read = meters(0.1f);
  read.compressor_reduction = 0.5f;
  monitor.advance(0.01, &read, setup);
  read.compressor_reduction = 0;
  for (int i = 0; i < 3; ++i) monitor.advance(0.01, &read, setup);
  ASSERT_EQ(monitor.live().history.size(), 1U);
  EXPECT_NEAR(monitor.live().history[0].compressor, -6.02, 0.01);
  EXPECT_NEAR(monitor.live().history[0].input, -20, 0.01);
  for (int i = 0; i < 1000; ++i) monitor.advance(0.05, &read, setup);
  EXPECT_EQ(monitor.live().history.size(), view::kHistoryMoments);
  EXPECT_EQ(monitor.live().history.back().compressor, 0);
}

// At low sample rates readings are rarer than the history's steps; a host may stop altogether.
TEST(Monitor, BridgesTheTimeBetweenReadings) {
  view::Monitor monitor(2, plugin_test::kRate);
  const view::Setup setup = gate();
  const channelstrip_meters read = meters(0.1f);
  for (int i = 0; i < 10; ++i) {
    monitor.advance(0.03, &read, setup);
    for (int n = 0; n < 3; ++n) monitor.advance(0.03, nullptr, setup);
  }
  for (const view::Moment& moment : monitor.live().history) EXPECT_NEAR(moment.input, -20, 0.01);
  for (int i = 0; i < 40; ++i) monitor.advance(0.03, nullptr, setup);
  EXPECT_EQ(monitor.live().history.back().input, view::kSilence);
  EXPECT_EQ(monitor.live().dynamics[0].detector, view::kSilence);
}

TEST(Monitor, ShowsTheSpectraOfTheRings) {
  view::Monitor monitor(1, plugin_test::kRate);
  plugins::SampleRing inputs(1), outputs(1);
  const auto noise = plugin_test::noise(1, 48000);
  const float* channel = noise[0].data();
  inputs.write(&channel, 48000);
  EXPECT_FALSE(monitor.live().has_spectrum);
  monitor.analyse(0.02, inputs, outputs);
  EXPECT_TRUE(monitor.live().has_spectrum);
  EXPECT_GT(monitor.live().input_spectrum[200], -40);
  EXPECT_EQ(monitor.live().output_spectrum[200], view::kSilence);
}

TEST(Monitor, LetsSpectraFallWhereNothingRuns) {
  view::Monitor monitor(1, plugin_test::kRate);
  plugins::SampleRing inputs(1), outputs(1);
  const auto noise = plugin_test::noise(1, 48000);
  const float* channel = noise[0].data();
  inputs.write(&channel, 48000);
  outputs.write(&channel, 48000);
  monitor.analyse(0.02, inputs, outputs);
  const float loud = monitor.live().output_spectrum[200];
  for (int i = 0; i < 100; ++i) monitor.analyse(0.03, inputs, outputs);
  EXPECT_LT(monitor.live().output_spectrum[200], loud - 40);
}

}  // namespace
}  // namespace channelstrip::view_monitor_test
