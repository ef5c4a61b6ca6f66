// The gains as they are applied to the audio.

#include "every_group.h"
#include "roundings.h"

namespace channelstrip::test::gain_test {
namespace {

class Gain : public EveryGroup {
 protected:
  void set_makeup(float makeup) {
    strip.dyn.makeupGain = makeup;
    strip.jump_to_targets();
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Gain, every_format(), format_name);

TEST_P(Gain, OfTwoTermsOfZeroDecibelsIsTwoHalfStepsAboveOne) {
  play(1);
  EXPECT_EQ(output(0), DbToGain(0) * DbToGain(0));
  EXPECT_NEAR(output(0), 1.0000026f, 1e-7);
}

TEST_P(Gain, IsMakeupTimesTheProductOfTheFactors) {
  const float comp = DbToGain(-1), exp = DbToGain(-2.2f), makeup = 1.1f;
  const float gain = makeup * (comp * exp);
  ASSERT_NE(gain, makeup * comp * exp);
  ASSERT_NE(gain, makeup * exp * comp);
  set_makeup(makeup);
  freeze_terms(-1, -2.2f);
  play(1);
  EXPECT_EQ(output(0), gain);
}

TEST_P(Gain, MultipliesTheAudioWhenItIsComplete) {
  const float audio = 0.6f, factors = DbToGain(-1) * DbToGain(-2.2f), makeup = 1.1f;
  const float expected = audio * (makeup * factors);
  ASSERT_NE(expected, audio * makeup * factors);
  ASSERT_NE(expected, audio * factors * makeup);
  set_makeup(makeup);
  freeze_terms(-1, -2.2f);
  play(audio);
  EXPECT_EQ(output(0), expected);
}

TEST_P(Gain, KeepsTheSignOfTheAudio) {
  play(-1);
  EXPECT_LT(output(0), -1.0f);
}

// A loud sample moves the compressor towards -12 dB and opens the gate; a quiet one moves it back
// and closes the gate. All gradually.
TEST_P(Gain, OfASampleComesFromThatSample) {
  constexpr float l = 0.3f, q = 0.001f;
  const std::array<float, 16> audio = {l, l, q, l, q, q, q, l, l, q, l, q, l, l, l, q};
  strip.dyn.compKneeLow = -50;
  strip.dyn.compKneeC = -12;
  strip.dyn.compAttack = 0.3f;
  strip.dyn.compRelease = 0.2f;
  strip.dyn.gateOpenThreshold = strip.dyn.gateCloseThreshold = -50;
  strip.dyn.expRange = -40;
  strip.dyn.expAttack = 0.6f;
  strip.dyn.expRelease = 0.1f;
  set_makeup(1.1f);
  for (auto& channel : strip.in) std::copy(audio.begin(), audio.end(), channel.begin());
  strip.process();

  float comp = 0, exp = 0;
  for (size_t k = 0; k < audio.size(); ++k) {
    const bool loud = audio[k] == l;
    comp = loud ? fused_step(comp, -12, 0.3f) : fused_step(comp, 0, 0.2f);
    exp = loud ? fused_step(exp, 0, 0.6f) : fused_step(exp, -40, 0.1f);
    EXPECT_EQ(output(k), audio[k] * (1.1f * (DbToGain(comp) * DbToGain(exp)))) << k;
  }
}

}  // namespace
}  // namespace channelstrip::test::gain_test
