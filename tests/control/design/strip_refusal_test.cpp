#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "refused.h"

namespace channelstrip::test::strip_refusal_test {
namespace {

using namespace host;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

std::string refused_at(double rate, const std::function<void(StripSettings&)>& set) {
  StripSettings settings;
  settings.compressor.emplace();
  settings.expander.emplace();
  settings.key_filter.emplace();
  set(settings);
  const ChannelLayout stereo = default_layout(*find_stem_format("Stereo"));
  return words(refusal_of(settings, rate, stereo));
}

std::string refused(const std::function<void(StripSettings&)>& set) {
  return refused_at(96000, set);
}

TEST(StripRefusal, NamesTheCompressorsSetting) {
  const auto with = [](double CompressorSettings::*setting, double value) {
    return refused([&](StripSettings& s) { (*s.compressor).*setting = value; });
  };
  using C = CompressorSettings;
  EXPECT_EQ(with(&C::threshold, kNan), "compressor.threshold nan dB is not -200 to 200 dB");
  EXPECT_EQ(with(&C::ratio, -2),
            "compressor.ratio -2 is not 1 or more: a compressor never makes louder what is above "
            "its threshold");
  EXPECT_EQ(with(&C::ratio, 0.5),
            "compressor.ratio 0.5 is not 1 or more: a compressor never makes louder what is above "
            "its threshold");
  EXPECT_EQ(with(&C::knee, 0.05), "compressor.knee 0.05 dB is not 0 or 0.1 to 200 dB");
  EXPECT_EQ(with(&C::attack, -1), "compressor.attack -1 ms is not 0 to 10000 ms");
  EXPECT_EQ(with(&C::release, kInfinity), "compressor.release inf ms is not 0 to 10000 ms");
  EXPECT_EQ(with(&C::range, -600),
            "compressor.range -600 dB is not above -600 dB and at most 0 dB");
  EXPECT_EQ(with(&C::range, 1), "compressor.range 1 dB is not above -600 dB and at most 0 dB");
  EXPECT_EQ(with(&C::makeup, 201), "compressor.makeup 201 dB is not -200 to 200 dB");
}

TEST(StripRefusal, NamesTheExpandersSetting) {
  const auto with = [](double ExpanderSettings::*setting, double value) {
    return refused([&](StripSettings& s) { (*s.expander).*setting = value; });
  };
  using E = ExpanderSettings;
  EXPECT_EQ(with(&E::threshold, 300), "expander.threshold 300 dB is not -200 to 200 dB");
  EXPECT_EQ(with(&E::ratio, kInfinity), "expander.ratio inf is not 1 to 100");
  EXPECT_EQ(with(&E::knee, kNan), "expander.knee nan dB is not 0 or 0.1 to 200 dB");
  EXPECT_EQ(with(&E::attack, kNan), "expander.attack nan ms is not 0 to 10000 ms");
  EXPECT_EQ(with(&E::release, 10001), "expander.release 10001 ms is not 0 to 10000 ms");
  EXPECT_EQ(with(&E::hold, -0.5), "expander.hold -0.5 ms is not 0 to 10000 ms");
  EXPECT_EQ(with(&E::range, -150), "expander.range -150 dB is not above -150 dB and at most 0 dB");
  EXPECT_EQ(refused([](StripSettings& s) { s.expander->hysteresis = -3; }),
            "expander.hysteresis -3 dB is not 0 to 200 dB");
}

TEST(StripRefusal, NamesTheBand) {
  EXPECT_EQ(refused([](StripSettings& s) {
              s.pre.assign(2, {});
              s.post.assign(1, {});
              s.post[0].frequency = 60000;
            }),
            "eq band 3: frequency 60000 Hz is not below half the sample rate 96000 Hz");
  EXPECT_EQ(refused([](StripSettings& s) {
              s.pre.assign(1, {});
              s.pre[0].q = 0;
            }),
            "eq band 1: q 0 is not above 0 and finite");
  EXPECT_EQ(refused([](StripSettings& s) { s.key_filter->gain = kNan; }),
            "key filter: gain nan dB is not -200 to 200 dB");
}

TEST(StripRefusal, CountsTheBands) {
  EXPECT_EQ(refused([](StripSettings& s) {
              s.pre.assign(4, {});
              s.post.assign(5, {});
            }),
            "eq: 9 bands take 9 sections, a strip has 8");
}

// Floats near 1 have steps of 6e-8, in which w^2 = 1e-9 and alpha / A = 2e-9 are lost.
TEST(StripRefusal, RefusesBandsThatSinglePrecisionCannotHold) {
  EXPECT_EQ(refused([](StripSettings& s) {
              s.pre = {{BandType::kHighPass, 0.5, 0.7, 0}};
            }),
            "eq band 1: frequency 0.5 Hz, q 0.7 and slope 12 dB/oct leave no stable filter in "
            "single precision at 96000 Hz: a pole stands at radius 1");
  EXPECT_EQ(refused([](StripSettings& s) {
              s.key_filter = {BandType::kPeak, 1000, 1e7, 6};
            }),
            "key filter: frequency 1000 Hz, q 10000000 and gain 6 dB leave no stable filter in "
            "single precision at 96000 Hz: a pole stands at radius 1");
}

TEST(StripRefusal, NamesTheDetectorAndTheGlide) {
  EXPECT_EQ(refused([](StripSettings& s) { s.detector.time = -1; }),
            "detector.time -1 ms is not 0 to 10000 ms");
  EXPECT_EQ(refused([](StripSettings& s) { s.glide = kNan; }), "glide nan ms is not 0 to 10000 ms");
  EXPECT_EQ(refused([](StripSettings& s) { s.gain_in = kNan; }),
            "gain_in nan dB is not -200 to 200 dB");
  EXPECT_EQ(refused([](StripSettings& s) { s.gain_out = -kInfinity; }),
            "gain_out -inf dB is not -200 to 200 dB");
  EXPECT_EQ(refused([](StripSettings& s) { s.mix = 101; }), "mix 101 % is not 0 to 100 %");
}

TEST(StripRefusal, NamesTheInputMeterGain) {
  EXPECT_EQ(refused([](StripSettings& s) { s.input_meter_gain = kInfinity; }),
            "input_meter_gain inf dB is not -200 to 200 dB");
}

TEST(StripRefusal, NamesTheLinkMap) {
  EXPECT_EQ(refused([](StripSettings& s) {
              s.link = {{"Stereo", "L | C"}};
            }),
            "link: the map names C, the channels are L R");
  EXPECT_EQ(refused([](StripSettings& s) {
              s.link = {{"5.3", "L R"}};
            }),
            "link: no format is called 5.3");
}

TEST(StripRefusal, NamesTheSampleRate) {
  const auto nothing = [](StripSettings&) {};
  EXPECT_EQ(refused_at(0, nothing), "sample rate 0 Hz is not above 0 and finite");
  EXPECT_EQ(refused_at(kNan, nothing), "sample rate nan Hz is not above 0 and finite");
}

TEST(StripRefusal, NamesAnAverageTooLongForSinglePrecision) {
  const auto average = [](StripSettings& s) { s.detector = {DetectorMode::kSmooth, 10000}; };
  const auto rms = [](StripSettings& s) { s.detector = {DetectorMode::kAverage, 10000}; };
  EXPECT_EQ(refused_at(1e6, average), "");
  EXPECT_EQ(refused_at(1e6, rms), "");
  EXPECT_EQ(refused_at(1e7, rms),
            "detector.time 10000 ms is not short enough for single precision at 10000000 Hz");
  EXPECT_EQ(refused_at(1e7, average),
            "detector.time 10000 ms is not short enough for single precision at 10000000 Hz");
}

TEST(StripRefusal, AcceptsEverySampleRateThatAFileMayHave) {
  const auto long_hold = [](StripSettings& s) {
    s.expander = {.hold = 10000};
    s.key_filter.reset();
  };
  for (const double rate : {1.0, 100.0, 8000.0, 2147483647.0}) {
    EXPECT_EQ(refused_at(rate, long_hold), "") << rate;
  }
}

TEST(StripRefusal, AcceptsTheDefaultsAndTheEndsOfTheRanges) {
  EXPECT_EQ(refused([](StripSettings& s) {
              s.compressor = {200, kInfinity, 0.1, 0, 10000, -599, 200};
              s.expander = {-200, 100, 0, 0, 10000, 10000, -149, 200};
            }),
            "");
  EXPECT_EQ(refused([](StripSettings&) {}), "");
}

}  // namespace
}  // namespace channelstrip::test::strip_refusal_test
