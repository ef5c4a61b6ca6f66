// The level detector of a group: peak with release, or smoothed by a second-order section.

#include "every_group.h"

namespace channelstrip::test::detector_test {
namespace {

class PeakDetector : public EveryGroup {
 protected:
  PeakDetector() {
    strip.dyn.detectorMode = 0;
    strip.dyn.peakDecay = 0.5f;
  }

  float peak_after(std::initializer_list<float> ending) {
    play(0, ending);
    return state(&Dyn_SState::peakLevel);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, PeakDetector, every_format(), format_name);

TEST_P(PeakDetector, RisesAtOnce) {
  EXPECT_EQ(peak_after({1.0f, 1.1f}), 1.1f);
}

TEST_P(PeakDetector, ComparesWithThePeakBeforeItsDecay) {
  EXPECT_EQ(peak_after({1.0f, 0.9f}), 0.5f);
}

TEST_P(PeakDetector, FallsUnderALevelEqualToThePeak) {
  EXPECT_EQ(peak_after({1.0f, 1.0f}), 0.5f);
}

TEST_P(PeakDetector, StartsFromTheLastCallsPeak) {
  set_state(&Dyn_SState::peakLevel, 65536.0f);
  EXPECT_EQ(peak_after({}), 1.0f);
}

TEST_P(PeakDetector, FallsByOneRoundedProductASample) {
  strip.dyn.peakDecay = 0.9f;
  float expected = 1;
  for (int k = 0; k < 11; ++k) expected *= 0.9f;
  EXPECT_EQ(peak_after({1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}), expected);
}

TEST_P(PeakDetector, DetectsMagnitudes) {
  EXPECT_EQ(peak_after({-1.0f}), 1.0f);
}

TEST_P(PeakDetector, IgnoresNaN) {
  EXPECT_EQ(peak_after({1.0f, kNaN}), 0.5f);
}

class SmoothDetector : public EveryGroup {
 protected:
  void set_filter(std::array<float, 5> coefs) {
    std::copy(coefs.begin(), coefs.end(), strip.dyn.detectorFilter);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, SmoothDetector, every_format(), format_name);

// Coefficients with few bits, so that every product and sum is exact.
TEST_P(SmoothDetector, IsASecondOrderSectionWithAddedFeedback) {
  set_filter({0.5f, 0.25f, 2, 0.5f, -0.25f});
  const float response[] = {0.5f, 0.5f, 2.125f, 0.9375f, -0.0625f, -0.265625f};
  for (size_t delay = 0; delay < std::size(response); ++delay) {
    set_state(&Dyn_SState::detZ1, 0.0f);
    set_state(&Dyn_SState::detZ2, 0.0f);
    strip.fill_inputs(0);
    for (auto& channel : strip.in) channel[15 - delay] = 1;
    strip.process();
    EXPECT_EQ(state(&Dyn_SState::smoothLevel), response[delay]) << delay;
  }
}

TEST_P(SmoothDetector, StartsFromTheLastCallsMemory) {
  set_filter({0, 0, 0, 1, 0});
  set_state(&Dyn_SState::detZ1, 1.0f);
  set_state(&Dyn_SState::detZ2, 2.0f);
  play(0);
  EXPECT_EQ(state(&Dyn_SState::smoothLevel), 3.0f);
}

TEST_P(SmoothDetector, StoresItsMemory) {
  set_filter({0, 2, 3, 0, 0});
  play(0, {1});
  EXPECT_EQ(state(&Dyn_SState::detZ1), 2.0f);
  EXPECT_EQ(state(&Dyn_SState::detZ2), 3.0f);
}

// The smoothing filter halves, so the modes differ. The compressor term is the detector level in
// dB.
class DetectorMode : public EveryGroup {
 protected:
  DetectorMode() {
    strip.dyn.detectorFilter[0] = 0.5f;
    strip.dyn.peakDecay = 1;
    strip.dyn.compKneeHigh = strip.dyn.compKneeLow = -1000;
    strip.dyn.compSlope = 1;
  }

  float detected_level_db(float level) {
    play(level);
    return state(&Dyn_SState::compGain);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, DetectorMode, every_format(), format_name);

TEST_P(DetectorMode, AboveZeroIsTheSmoothedLevel) {
  for (int32_t mode : {1, 2, INT32_MAX}) {
    strip.dyn.detectorMode = mode;
    set_state(&Dyn_SState::compGain, 0.0f);
    EXPECT_EQ(detected_level_db(kLevel), LevelToDb(kLevel / 2)) << mode;
  }
}

TEST_P(DetectorMode, ZeroOrBelowIsThePeakLevel) {
  for (int32_t mode : {0, -1, INT32_MIN}) {
    strip.dyn.detectorMode = mode;
    set_state(&Dyn_SState::compGain, 0.0f);
    EXPECT_EQ(detected_level_db(kLevel), LevelToDb(kLevel)) << mode;
  }
}

TEST_P(DetectorMode, BothDetectorsRunInBothModes) {
  for (int32_t mode : {0, 1}) {
    strip.dyn.detectorMode = mode;
    set_state(&Dyn_SState::peakLevel, 0.0f);
    set_state(&Dyn_SState::smoothLevel, 0.0f);
    play(kLevel);
    EXPECT_EQ(state(&Dyn_SState::peakLevel), kLevel) << mode;
    EXPECT_EQ(state(&Dyn_SState::smoothLevel), kLevel / 2) << mode;
  }
}

TEST_P(DetectorMode, SwitchContinuesFromTheOtherDetectorsCurrentValue) {
  strip.dyn.detectorMode = 1;
  play(kLevel);
  strip.dyn.detectorMode = 0;
  EXPECT_EQ(detected_level_db(0), LevelToDb(kLevel));
}

TEST_P(DetectorMode, SilenceIsAtTheFloor) {
  EXPECT_EQ(detected_level_db(0), -140.0f);
}

TEST_P(DetectorMode, NaNInTheAudioIsAtTheFloor) {
  EXPECT_EQ(detected_level_db(kNaN), -140.0f);
}

TEST_P(DetectorMode, NegativeSmoothedLevelIsAtTheFloor) {
  strip.dyn.detectorFilter[0] = -1;
  EXPECT_EQ(detected_level_db(kLevel), -140.0f);
}

TEST_P(DetectorMode, NaNSmoothedLevelIsAtTheFloor) {
  set_state(&Dyn_SState::detZ1, kNaN);
  strip.dyn.detectorFilter[3] = 1;
  EXPECT_EQ(detected_level_db(kLevel), -140.0f);
}

}  // namespace
}  // namespace channelstrip::test::detector_test
