#include "host/loudness/normalisation.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

namespace channelstrip::test::normalisation_test {
namespace {

using namespace host;

double power_at(double loudness) {
  return std::pow(10, (loudness + 0.691) / 10);
}

float linear(double db) {
  return static_cast<float>(std::pow(10, db / 20));
}

// 10 s at one loudness in LUFS, with a true peak in dBTP.
Programme steady(double loudness, double true_peak) {
  return {std::vector<double>(100, power_at(loudness)), linear(true_peak)};
}

TEST(Normalisation, TakesAProgrammeToItsTarget) {
  const Normalisation quiet = normalise(steady(-31.7, -20), {.loudness = -16});
  EXPECT_EQ(quiet.gain, 15.7);
  EXPECT_NEAR(quiet.loudness.value_or(0), -16, 1e-9);
  EXPECT_NEAR(quiet.true_peak, -4.3, 1e-5);
  EXPECT_FALSE(quiet.held);
  const Normalisation loud = normalise(steady(-9, 1), {.loudness = -23});
  EXPECT_EQ(loud.gain, -14);
  EXPECT_FALSE(loud.held);
}

TEST(Normalisation, GainIsAMultipleOfAHundredthOfADecibel) {
  EXPECT_EQ(normalise(steady(-20.1234, -20), {.loudness = -16}).gain, 4.12);
  EXPECT_EQ(normalise(steady(-20, -5.1234), {.loudness = -10}).gain, 4.12);
  EXPECT_EQ(normalise(steady(-20, -0.1234), {.loudness = -10}).gain, -0.88);
}

TEST(Normalisation, NeverExceedsTheCeiling) {
  const Normalisation held = normalise(steady(-20, -3), {.loudness = -16});
  EXPECT_TRUE(held.held);
  EXPECT_NEAR(held.gain, 2, 0.0101);
  EXPECT_NEAR(held.loudness.value_or(0), -18, 0.0101);
  EXPECT_LE(held.true_peak, -1);
  const Normalisation lower = normalise(steady(-20, -3), {.loudness = -16, .true_peak = -9});
  EXPECT_TRUE(lower.held);
  EXPECT_NEAR(lower.gain, -6, 0.0101);
  EXPECT_LE(lower.true_peak, -9);
}

TEST(Normalisation, IsNotHeldWhereTheCeilingCostsNothingThatShows) {
  EXPECT_FALSE(normalise(steady(-20, -5.03), {.loudness = -16}).held);
  EXPECT_TRUE(normalise(steady(-20, -4.9), {.loudness = -16}).held);
}

// Half of it lies at -75 LUFS, which counts towards the relative gate from 5 dB up: that gate then
// leaves in the stretch 11 LU below the loudest one.
TEST(Normalisation, FollowsTheGatesAcrossTheGain) {
  Programme programme = steady(-40, -30);
  programme.power.resize(110, power_at(-51));
  programme.power.resize(300, power_at(-75));
  const Normalisation raised = normalise(programme, {.loudness = -20});
  EXPECT_NEAR(raised.loudness.value_or(0), -20, 0.006);
  EXPECT_GT(raised.gain, 20.1);
}

TEST(Normalisation, LeavesTheLevelWhereThereIsNoLoudness) {
  for (const Programme& programme : {Programme{}, steady(-90, -80), Programme{{}, 0.5f},
                                     Programme{std::vector<double>(100, 0.0), 0}}) {
    const Normalisation none = normalise(programme, {.loudness = -16});
    EXPECT_EQ(none.gain, 0);
    EXPECT_FALSE(none.loudness);
  }
}

TEST(Normalisation, LeavesTheLevelWhereThePeakIsNotFinite) {
  Programme programme = steady(-20, 0);
  programme.true_peak = std::numeric_limits<float>::infinity();
  EXPECT_EQ(normalise(programme, {.loudness = -16}).gain, 0);
  EXPECT_FALSE(normalise(programme, {.loudness = -16}).loudness);
}

// At -70 LUFS the absolute gate leaves nothing to measure.
TEST(Normalisation, GoesDownToTheGate) {
  EXPECT_NEAR(normalise(steady(-20, -3), {.loudness = -70}).gain, -50, 0.0101);
}

}  // namespace
}  // namespace channelstrip::test::normalisation_test
