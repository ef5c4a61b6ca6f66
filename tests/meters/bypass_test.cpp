// Bypass: it switches the outputs at once, while all stages keep running.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cmath>

namespace channelstrip::test::bypass_test {
namespace {

class Bypass : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Bypass, every_format(), format_name);

TEST_P(Bypass, AnyPositiveValueCopiesTheInputsToTheBit) {
  for (const int32_t bypass : {1, 2, 256, INT32_MAX}) {
    BusyStrip strip(format());
    for (auto& channel : strip.in) {
      channel[1] = -0.0f;
      channel[2] = 0x1p-149f;
      channel[3] = std::bit_cast<float>(0x7FC12345u);  // a quiet NaN's payload too
      channel[20] = INFINITY;
    }
    strip.dyn.bypass = bypass;
    strip.process();
    strip.in.resize(channels());
    EXPECT_TRUE(same_bits(strip.out, strip.in)) << bypass;
  }
}

TEST_P(Bypass, ZeroAndNegativeValuesLeaveTheProcessedOutputs) {
  BusyStrip reference(format());
  reference.process();
  for (const int32_t bypass : {-1, -256, INT32_MIN}) {
    BusyStrip strip(format());
    strip.dyn.bypass = bypass;
    strip.process();
    strip.dyn.bypass = 0;
    EXPECT_EQ(differences(strip, reference), "") << bypass;
  }
}

TEST_P(Bypass, OutputsAreProcessedOtherwise) {
  BusyStrip strip(format());
  strip.process();
  for (size_t c = 0; c < channels(); ++c) EXPECT_FALSE(same_bits(strip.out[c], strip.in[c])) << c;
}

TEST_P(Bypass, CopiesWholeBlocksAndNothingBehindThem) {
  BusyStrip strip(format(), 48);
  for (auto& channel : strip.out) std::fill(channel.begin(), channel.end(), 77.0f);
  strip.sample_count = 17;
  strip.dyn.bypass = 1;
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    std::vector<float> expected = strip.in[c];
    std::fill(expected.begin() + 32, expected.end(), 77.0f);
    EXPECT_EQ(strip.out[c], expected) << c;
  }
}

// Apart from outputs and output peaks, a bypassed call has the same results as any other.
TEST_P(Bypass, AllStateRunsOn) {
  BusyStrip bypassed(format()), reference(format());
  bypassed.dyn.bypass = 1;
  bypassed.process();
  bypassed.dyn.bypass = 0;
  reference.process();
  bypassed.out = reference.out;
  for (size_t i = channels(); i < 2 * channels(); ++i) bypassed.meters[i] = reference.meters[i];
  EXPECT_EQ(differences(bypassed, reference), "");
}

TEST_P(Bypass, LeavingItResumesFromTheStateOfNow) {
  BusyStrip strip(format()), reference(format());
  strip.dyn.bypass = 1;
  strip.process();
  strip.dyn.bypass = 0;
  strip.process();
  reference.process();
  reference.process();
  EXPECT_TRUE(same_bits(strip.out, reference.out));
}

TEST_P(Bypass, OutputPeakIsTheInputsUnscaled) {
  BusyStrip strip(format());
  strip.dyn.bypass = 1;
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    float peak = 0;
    for (const float sample : strip.in[c]) peak = std::max(peak, std::abs(sample));
    EXPECT_EQ(strip.output_peak(static_cast<int>(c)), peak) << c;
  }
}

TEST_P(Bypass, OutputPeakKeepsAGreaterHeldValue) {
  BusyStrip strip(format());
  strip.dyn.bypass = 1;
  std::fill(strip.meters.begin(), strip.meters.end(), 5.0f);
  strip.process();
  for (int c = 0; c < strip.channels; ++c) EXPECT_EQ(strip.output_peak(c), 5) << c;
}

TEST_P(Bypass, SampleThatIsNotANumberNeverEntersThePeaks) {
  Strip strip(format());
  strip.dyn.bypass = 1;
  strip.fill_inputs(0.5f);
  for (auto& channel : strip.in) channel[15] = NAN;
  strip.process();
  for (int c = 0; c < strip.channels; ++c) {
    EXPECT_EQ(strip.input_peak(c), 0.5f) << c;
    EXPECT_EQ(strip.output_peak(c), 0.5f) << c;
  }
}

// When the bypass acts, the inputs have already been overwritten: there is nothing to restore.
TEST_P(Bypass, InPlaceLeavesTheProcessedAudio) {
  BusyStrip bypassed(format()), processed(format());
  bypassed.dyn.bypass = 1;
  process_on(bypassed, pointers(bypassed.in), pointers(bypassed.in));
  process_on(processed, pointers(processed.in), pointers(processed.in));
  bypassed.dyn.bypass = 0;
  EXPECT_EQ(differences(bypassed, processed), "");
}

// out[c] is in[c + 1], and the last output is in[0]. The first pass halves in ascending order,
// which leaves input 0 at 2^-N. The bypass of channel 0 copies it to input 1, channel 1 copies
// that, and so on through all channels.
TEST_P(Bypass, GoesChannelByChannelInAscendingOrder) {
  Strip strip(format());
  strip.halve_exactly();
  strip.dyn.bypass = 1;
  strip.in.resize(channels());
  strip.fill_inputs(1);
  std::vector<float*> outputs = pointers(strip.in);
  std::rotate(outputs.begin(), outputs.begin() + 1, outputs.end());
  process_on(strip, pointers(strip.in), outputs);
  const float chained = std::ldexp(1.0f, -static_cast<int>(channels()));
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_EQ(strip.in[c], std::vector<float>(16, chained)) << c;
    EXPECT_EQ(strip.input_peak(static_cast<int>(c)), chained) << c;
    EXPECT_EQ(strip.output_peak(static_cast<int>(c)), chained) << c;
  }
}

}  // namespace
}  // namespace channelstrip::test::bypass_test
