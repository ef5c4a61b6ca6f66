// Where the detection signal comes from: a channel's own audio or the key channel.

#include "every_group.h"

namespace channelstrip::test::key_detection_test {
namespace {

constexpr float kOwn = 0.25f, kKey = 0.5f;

class KeyDetection : public EveryGroup {
 protected:
  KeyDetection() {
    strip.dyn.keyEnable = 1;
    strip.key_index = strip.channels;
    set_inputs(kOwn);
  }

  void set_inputs(float own) {
    strip.fill_inputs(own);
    strip.in.back().assign(16, kKey);
  }

  float detected() {
    strip.process();
    return state(&Dyn_SState::smoothLevel);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, KeyDetection, every_format(), format_name);

TEST_P(KeyDetection, IsOfTheKeyWhenEnableIsOne) {
  EXPECT_EQ(detected(), kKey);
}

TEST_P(KeyDetection, IsOfOwnAudioWhenEnableIsAnythingElse) {
  for (int32_t enable : {0, 2, -1, 257, INT32_MIN}) {
    strip.dyn.keyEnable = enable;
    EXPECT_EQ(detected(), kOwn) << enable;
  }
}

TEST_P(KeyDetection, IsOfOwnAudioWithoutAKeyChannel) {
  strip.key_index = 0;
  EXPECT_EQ(detected(), kOwn);
}

TEST_P(KeyDetection, RulesTheGainOfTheMainChannels) {
  strip.dyn.compKneeLow = kLevelDb;
  strip.dyn.compKneeC = -12;
  ASSERT_GT(kKey, kLevel);
  ASSERT_LT(kOwn, kLevel);
  strip.process();
  EXPECT_EQ(output(15), kOwn * (DbToGain(-12) * DbToGain(0)));
}

TEST_P(KeyDetection, GoesOnWhileTheMainChannelsAreSilent) {
  set_inputs(0);
  EXPECT_EQ(detected(), kKey);
  EXPECT_EQ(output(15), 0.0f);
}

// In Mono the last channel is input 0, and that index means no key: the level is the same.
TEST_P(KeyDetection, MayBeOfAMainChannel) {
  strip.key_index = strip.channels - 1;
  strip.in[channels() - 1].assign(16, 0.75f);
  EXPECT_EQ(detected(), 0.75f);
}

// The pass before the dynamics doubles; the gain of -24 dB then halves four times.
class KeyInOutputs : public KeyDetection {
 protected:
  KeyInOutputs() {
    strip.set_band(0, {2, 0, 0, 0, 0});
    strip.eq.endBand[0] = 1;
    strip.jump_to_targets();
    freeze_terms(-24, 0);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, KeyInOutputs, every_format(), format_name);

TEST_P(KeyInOutputs, IsReadBetweenTheFirstPassAndTheGains) {
  std::vector<float*> inputs = pointers(strip.in);
  inputs[channels()] = strip.out[0].data();
  process_on(strip, inputs, pointers(strip.out));
  EXPECT_EQ(state(&Dyn_SState::smoothLevel), 2 * kOwn);
}

TEST_P(KeyInOutputs, MayBeAMainChannelProcessedInPlace) {
  strip.key_index = strip.channels - 1;
  std::vector<float*> outputs = pointers(strip.out);
  outputs[channels() - 1] = strip.in[channels() - 1].data();
  strip.in[channels() - 1].assign(16, 0.75f);
  process_on(strip, pointers(strip.in), outputs);
  EXPECT_EQ(state(&Dyn_SState::smoothLevel), 1.5f);
}

// Sixteen samples, each of which halves the distance to -64 dB.
TEST_P(KeyDetection, OfAllGroupsIsOneButTheirBallisticsAreNot) {
  strip.dyn.compKneeLow = -100;
  strip.dyn.compKneeC = -64;
  strip.dyn.compRange = -1e6f;
  strip.dyn.compAttack = strip.dyn.compRelease = 0.5f;
  strip.jump_to_targets();
  for (size_t c = 0; c < groups(); ++c) {
    strip.dyn_state[c].compGain = -64 - 0x1p16f * static_cast<float>(c);
  }
  EXPECT_EQ(detected(), kKey);
  for (size_t c = 0; c < groups(); ++c) {
    EXPECT_EQ(strip.dyn_state[c].compGain, -64 - static_cast<float>(c)) << c;
  }
}

}  // namespace
}  // namespace channelstrip::test::key_detection_test
