// Which audio the meters measure: the host's inputs and the final outputs, block by block.

#include <tests/support/busy_strip.h>
#include <tests/support/every_format.h>

#include <cmath>

namespace channelstrip::test::metered_audio_test {
namespace {

class MeteredAudio : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, MeteredAudio, every_format(), format_name);

TEST_P(MeteredAudio, OutputPeakIsThatOfTheFinalOutputs) {
  BusyStrip strip(format(), 64);
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    float peak = 0;
    for (const float sample : strip.out[c]) peak = std::max(peak, std::abs(sample));
    EXPECT_EQ(strip.output_peak(static_cast<int>(c)), peak) << c;
  }
}

TEST_P(MeteredAudio, InputPeakIsThatOfTheRawInputs) {
  BusyStrip strip(format(), 64);
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    float peak = 0;
    for (const float sample : strip.in[c]) peak = std::max(peak, std::abs(sample * 0.7f));
    EXPECT_EQ(strip.input_peak(static_cast<int>(c)), peak) << c;
  }
}

// The outputs lie one quad before the inputs, so by the end of the block every quad of inputs but
// the last has been overwritten by the next quad's outputs.
TEST_P(MeteredAudio, IsTakenWhenAllQuadsOfABlockAreDone) {
  Strip strip(format());
  strip.halve_exactly();
  for (auto& channel : strip.in) channel.insert(channel.begin(), 4, 0.0f), channel[4] = 1;
  process_on(strip, pointers(strip.in, 4), pointers(strip.in, 0));
  for (int c = 0; c < strip.channels; ++c) {
    EXPECT_EQ(strip.input_peak(c), 0) << c;
    EXPECT_EQ(strip.output_peak(c), 0.5f) << c;
  }
}

// In place, the meters find the outputs where the inputs were.
TEST_P(MeteredAudio, InPlaceBothMeasureTheProcessedAudio) {
  BusyStrip strip(format());
  strip.dyn.inputMeterGain = 1;
  process_on(strip, pointers(strip.in), pointers(strip.in));
  for (int c = 0; c < strip.channels; ++c) EXPECT_EQ(strip.input_peak(c), strip.output_peak(c));
}

}  // namespace
}  // namespace channelstrip::test::metered_audio_test
