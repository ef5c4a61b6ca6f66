// It makes no difference after which of the bands a constant gain is applied.

#include <gtest/gtest.h>
#include <tests/model/random_sections.h>
#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <memory>

namespace channelstrip::test::band_split_test {
namespace {

class BandSplit : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, BandSplit, every_format(), format_name);

// Eight peak bands that glide to eight others; peaks, because their b0 is never tiny. The gain of
// the dynamics is exactly `gain`.
std::unique_ptr<Strip> split_strip(std::string_view format, int split, float gain) {
  auto strip = std::make_unique<Strip>(format, 96);
  Random random(1);
  const auto set_peaks = [&] {
    for (int band = 0; band < CHANNELSTRIP_EQ_BANDS; ++band) {
      strip->set_band(
          band, cookbook_section(Filter::kPeak, static_cast<double>(random.real(0.005F, 0.4F)), 1.0,
                                 static_cast<double>(random.real(-9.0F, 9.0F))));
    }
  };
  set_peaks();
  strip->jump_to_targets();
  set_peaks();
  strip->pass_exactly();
  strip->dyn.makeupGain *= gain;
  for (Dyn_SState& state : strip->dyn_state) {
    state.curMakeupGain = strip->dyn.makeupGain;
    state.dezipRate = 0.05f;
  }
  strip->eq.endBand[0] = strip->eq.firstBand[1] = split;
  strip->eq.endBand[1] = CHANNELSTRIP_EQ_BANDS;
  Noise noise(1);
  for (auto& channel : strip->in) std::generate(channel.begin(), channel.end(), noise);
  return strip;
}

TEST_P(BandSplit, AroundAGainOfOneEqualsTheUnsplitCascade) {
  const auto unsplit = split_strip(format(), CHANNELSTRIP_EQ_BANDS, 1);
  unsplit->process();
  for (int split = 0; split < CHANNELSTRIP_EQ_BANDS; ++split) {
    const auto strip = split_strip(format(), split, 1);
    strip->process();
    EXPECT_TRUE(same_bits(strip->out, unsplit->out)) << split;
    EXPECT_TRUE(same_bits(strip->eq_state, unsplit->eq_state)) << split;
    for (int c = 0; c < strip->channels; ++c) {
      EXPECT_EQ(strip->output_peak(c), unsplit->output_peak(c)) << split;
    }
  }
}

// Multiplying by a power of two commutes with every rounding.
TEST_P(BandSplit, AroundAGainOfOneHalfEqualsTheUnsplitCascade) {
  const auto unsplit = split_strip(format(), CHANNELSTRIP_EQ_BANDS, 0.5f);
  unsplit->process();
  for (int split = 0; split < CHANNELSTRIP_EQ_BANDS; ++split) {
    const auto strip = split_strip(format(), split, 0.5f);
    strip->process();
    EXPECT_TRUE(same_bits(strip->out, unsplit->out)) << split;
  }
}

}  // namespace
}  // namespace channelstrip::test::band_split_test
