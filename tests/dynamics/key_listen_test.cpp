// The key filter, and key listen, which puts its output on the outputs.

#include "every_group.h"

namespace channelstrip::test::key_listen_test {
namespace {

constexpr float kOwn = 0.25f, kKey = 0.5f;

// All settings but the key filter are far from neutral.
class KeyListen : public EveryGroup {
 protected:
  KeyListen() {
    strip.dyn.keyListen = 1;
    strip.dyn.keyEnable = 1;
    strip.key_index = strip.channels;
    strip.fill_inputs(kOwn);
    strip.in.back().assign(16, kKey);
    strip.dyn.makeupGain = 4;
    strip.jump_to_targets();
    freeze_terms(-20, -6);
  }

  void set_key_filter(std::array<float, 5> coefs) {
    std::copy(coefs.begin(), coefs.end(), strip.dyn.keyFilter);
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, KeyListen, every_format(), format_name);

TEST_P(KeyListen, GivesTheFilteredKeyForAnyValueButZero) {
  set_key_filter({-3, 0, 0, 0, 0});
  for (int32_t listen : {1, 2, -1, INT32_MIN}) {
    strip.dyn.keyListen = listen;
    strip.process();
    EXPECT_EQ(output(0), -3 * kKey) << listen;
  }
}

TEST_P(KeyListen, GivesTheAudioForZero) {
  strip.dyn.keyListen = 0;
  strip.process();
  EXPECT_EQ(output(0), kOwn * (4 * (DbToGain(-20) * DbToGain(-6))));
}

TEST_P(KeyListen, GivesEachChannelItsOwnFilteredAudioWithoutAKey) {
  set_key_filter({-3, 0, 0, 0, 0});
  strip.key_index = 0;
  for (size_t c = 0; c < channels(); ++c) strip.in[c].assign(16, static_cast<float>(c + 1));
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_EQ(strip.out[c][15], -3 * static_cast<float>(c + 1)) << c;
  }
}

TEST_P(KeyListen, LeavesTheGainComputerRunning) {
  set_key_filter({-3, 0, 0, 0, 0});
  strip.process();
  EXPECT_EQ(state(&Dyn_SState::smoothLevel), 3 * kKey);
  EXPECT_EQ(strip.readout(CHANNELSTRIP_METER_GAIN), DbToGain(-20) * DbToGain(-6));
  EXPECT_EQ(strip.readout(CHANNELSTRIP_METER_COMP_REDUCTION), 1 - DbToGain(-20));
}

// Coefficients with few bits, so that every product and sum is exact.
TEST_P(KeyListen, FilterIsASecondOrderSectionWithAddedFeedback) {
  set_key_filter({0.5f, 0.25f, 2, 0.5f, -0.25f});
  strip.fill_inputs(0);
  strip.in.back()[0] = 1;
  strip.process();
  const float response[] = {0.5f, 0.5f, 2.125f, 0.9375f, -0.0625f, -0.265625f};
  for (size_t k = 0; k < std::size(response); ++k) EXPECT_EQ(output(k), response[k]) << k;
}

TEST_P(KeyListen, EveryChannelFiltersTheKeyWithItsOwnMemory) {
  for (size_t c = 0; c < channels(); ++c) {
    strip.dyn_state[c].keyZ1 = static_cast<float>(c + 1);
    strip.dyn_state[c].keyZ2 = static_cast<float>(10 * (c + 1));
  }
  strip.process();
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_EQ(strip.out[c][0], kKey + static_cast<float>(c + 1));
    EXPECT_EQ(strip.out[c][1], kKey + static_cast<float>(10 * (c + 1)));
    EXPECT_EQ(strip.out[c][2], kKey);
  }
}

TEST_P(KeyListen, FilterKeepsItsMemoryBetweenCalls) {
  set_key_filter({0, 0, 1, 0, 0});  // a delay of two samples
  strip.in.back()[14] = 0.75f;
  strip.process();
  strip.process();
  EXPECT_EQ(output(0), 0.75f);
  EXPECT_EQ(output(1), kKey);
}

}  // namespace
}  // namespace channelstrip::test::key_listen_test
