// Input and output peaks: what they measure, and that they only rise.

#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cmath>

namespace channelstrip::test::output_meters_test {
namespace {

class OutputMeters : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, OutputMeters, every_format(), format_name);

// The dynamics gain is exactly 1.
class MeteredStrip : public Strip {
 public:
  explicit MeteredStrip(std::string_view format_name, int samples = 16)
      : Strip(format_name, samples) {
    pass_exactly();
  }

  void set_peaks(float value) { std::fill_n(meters.begin(), 2 * channels, value); }

  void expect_input_peaks(float value) const {
    for (int c = 0; c < channels; ++c) EXPECT_EQ(input_peak(c), value) << c;
  }
  void expect_output_peaks(float value) const {
    for (int c = 0; c < channels; ++c) EXPECT_EQ(output_peak(c), value) << c;
  }
};

TEST_P(OutputMeters, StayAtZeroInSilence) {
  MeteredStrip strip(format());
  strip.process();
  strip.expect_input_peaks(0);
  strip.expect_output_peaks(0);
}

TEST_P(OutputMeters, SeeEverySampleOfABlock) {
  for (size_t i = 0; i < 32; ++i) {
    MeteredStrip strip(format(), 32);
    for (auto& channel : strip.in) channel[i] = 0.5f;
    strip.process();
    strip.expect_input_peaks(0.5f);
    strip.expect_output_peaks(0.5f);
  }
}

TEST_P(OutputMeters, MeasureMagnitudes) {
  MeteredStrip strip(format());
  for (auto& channel : strip.in) channel[3] = 0.25f, channel[9] = -0.5f;
  strip.process();
  strip.expect_input_peaks(0.5f);
  strip.expect_output_peaks(0.5f);
}

TEST_P(OutputMeters, OnlyRise) {
  MeteredStrip strip(format());
  strip.fill_inputs(0.5f);
  strip.process();
  strip.fill_inputs(0.25f);
  strip.process();
  strip.expect_input_peaks(0.5f);
  strip.expect_output_peaks(0.5f);
}

TEST_P(OutputMeters, MeasureAnewFromTheHostsReset) {
  MeteredStrip strip(format());
  strip.fill_inputs(0.5f);
  strip.process();
  strip.set_peaks(0);
  strip.fill_inputs(0.25f);
  strip.process();
  strip.expect_input_peaks(0.25f);
  strip.expect_output_peaks(0.25f);
}

TEST_P(OutputMeters, EqualPeakKeepsTheHeldValue) {
  MeteredStrip strip(format());
  strip.set_peaks(-0.0f);
  strip.process();
  for (size_t i = 0; i < 2 * channels(); ++i) EXPECT_EQ(bits(strip.meters[i]), bits(-0.0f)) << i;
}

TEST_P(OutputMeters, InputGainScalesTheInputPeakAlone) {
  MeteredStrip strip(format());
  strip.dyn.inputMeterGain = 2;
  strip.fill_inputs(0.5f);
  strip.process();
  strip.expect_input_peaks(1);
  strip.expect_output_peaks(0.5f);
  for (const auto& channel : strip.out) EXPECT_EQ(channel, std::vector<float>(16, 0.5f));
}

TEST_P(OutputMeters, InputGainOfZeroRaisesNothing) {
  for (const float held : {0.0f, 0.125f}) {
    MeteredStrip strip(format());
    strip.dyn.inputMeterGain = 0;
    strip.set_peaks(held);
    strip.fill_inputs(0.5f);
    strip.process();
    strip.expect_input_peaks(held);
  }
}

TEST_P(OutputMeters, NegativeInputGainCountsByItsMagnitude) {
  MeteredStrip strip(format());
  strip.dyn.inputMeterGain = -2;
  for (auto& channel : strip.in) channel[2] = 0.25f, channel[4] = -0.5f;
  strip.process();
  strip.expect_input_peaks(1);
}

TEST_P(OutputMeters, InputGainThatIsNotANumberRaisesNothing) {
  MeteredStrip strip(format());
  strip.dyn.inputMeterGain = NAN;
  strip.set_peaks(0.125f);
  strip.fill_inputs(0.5f);
  strip.process();
  strip.expect_input_peaks(0.125f);
  strip.expect_output_peaks(0.5f);
}

TEST_P(OutputMeters, SampleThatIsNotANumberNeverEnters) {
  for (size_t i = 0; i < 16; ++i) {
    MeteredStrip strip(format());
    strip.fill_inputs(0.5f);
    for (auto& channel : strip.in) channel[i] = NAN;
    strip.process();
    strip.expect_input_peaks(0.5f);
    strip.expect_output_peaks(0.5f);
  }
}

TEST_P(OutputMeters, BlockWithoutANumberLeavesThemAsTheyWere) {
  MeteredStrip strip(format());
  strip.set_peaks(0.125f);
  strip.fill_inputs(NAN);
  strip.process();
  strip.expect_input_peaks(0.125f);
  strip.expect_output_peaks(0.125f);
}

TEST_P(OutputMeters, HeldNotANumberStaysUntilTheHostResetsIt) {
  MeteredStrip strip(format());
  strip.set_peaks(NAN);
  strip.fill_inputs(0.5f);
  strip.process();
  for (size_t i = 0; i < 2 * channels(); ++i) EXPECT_TRUE(std::isnan(strip.meters[i])) << i;
}

TEST_P(OutputMeters, InfiniteSampleEnters) {
  MeteredStrip strip(format());
  for (auto& channel : strip.in) channel[7] = -INFINITY;
  strip.process();
  strip.expect_input_peaks(INFINITY);
  strip.expect_output_peaks(INFINITY);
}

TEST_P(OutputMeters, BelongToTheirChannels) {
  for (size_t loud = 0; loud < channels(); ++loud) {
    MeteredStrip strip(format());
    strip.in[loud][11] = 0.5f;
    std::fill_n(strip.meters.begin(), 2 * channels(), 0.125f);
    strip.process();
    for (size_t c = 0; c < channels(); ++c) {
      EXPECT_EQ(strip.meters[c], c == loud ? 0.5f : 0.125f) << c;
      EXPECT_EQ(strip.meters[channels() + c], c == loud ? 0.5f : 0.125f) << c;
    }
  }
}

TEST_P(OutputMeters, NotANumberStaysOnItsChannel) {
  for (size_t sick = 0; sick < channels(); ++sick) {
    MeteredStrip strip(format());
    strip.fill_inputs(0.5f);
    strip.meters[sick] = strip.meters[channels() + sick] = NAN;
    strip.process();
    for (size_t c = 0; c < channels(); ++c) {
      EXPECT_EQ(std::isnan(strip.meters[c]), c == sick) << c;
      EXPECT_EQ(std::isnan(strip.meters[channels() + c]), c == sick) << c;
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::output_meters_test
