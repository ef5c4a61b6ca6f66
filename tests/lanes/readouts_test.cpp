// The gain readout and its level, which an instance's link groups share: their result must not
// depend on how many groups and instances are processed at once.

#include <ChannelStrip/dynamics/fast_log.h>
#include <tests/model/random.h>

#include <cmath>
#include <limits>
#include <span>
#include <vector>

#include "beside.h"

namespace channelstrip::test::readouts_test {
namespace {

class ReadoutsBeside : public BesideEachOther {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, ReadoutsBeside, every_format(), format_name);

constexpr std::size_t kLevel = CHANNELSTRIP_METER_LEVEL, kGain = CHANNELSTRIP_METER_GAIN;

void set_readouts(Rack& rack, std::size_t i, float value) {
  for (std::size_t r = 0; r < 4 + rack.channels; ++r) rack.readout(i, r) = value;
}

constexpr float kStarts[] = {0.0f,     -0.0f,     -1.0f,
                             0.3f,     1e-40f,    -1e-40f,
                             INFINITY, -INFINITY, std::numeric_limits<float>::quiet_NaN()};

TEST_P(ReadoutsBeside, MayStartAnywhere) {
  for (const float gain : kStarts) {
    for (const float level : {0.0f, 0.2f, -1.0f, std::numeric_limits<float>::quiet_NaN()}) {
      expect_the_models_with_one([=](Rack& rack, std::size_t i) {
        for (std::size_t k = 0; k < rack.size(); ++k) set_readouts(rack, k, 0.4f);
        rack.readout(i, kGain) = gain;
        rack.readout(i, kLevel) = level;
      });
    }
  }
}

TEST_P(ReadoutsBeside, MayAllStartSomewhereElse) {
  for (std::size_t first = 0; first < std::size(kStarts); ++first) {
    expect_the_models([=](Rack& rack) {
      for (std::size_t i = 0; i < rack.size(); ++i) {
        set_readouts(rack, i, kStarts[(first + i) % std::size(kStarts)]);
      }
    });
  }
}

// Gain factors of -599 and -700 dB, whose product underflows to 0 for some blocks, for some samples
// or throughout. A negative readout rises to that 0, which counts as empty.
TEST_P(ReadoutsBeside, MayStayEmptyWhileGainsUnderflow) {
  for (const float start : {0.0f, -0.0f, -1.0f}) {
    expect_the_models([=](Rack& rack) {
      for (std::size_t i = 0; i < rack.size(); ++i) {
        const float weights[] = {0.02f, 0.2f, 0.0f};
        Dyn_SCoefsBlock& dyn = rack.dyn[i];
        dyn.compAttack = dyn.compRelease = dyn.expAttack = dyn.expRelease = weights[i % 3];
        dyn.compRange = -599;
        for (std::size_t c = 0; c < rack.channels; ++c) {
          Dyn_SState& state = rack.dyn_state[i * rack.channels + c];
          state.compGain = state.curCompRange = -599;
          state.expGain = -700;
        }
        set_readouts(rack, i, start);
      }
    });
  }
}

// The gain for levels below -50 dB; above, it is 12 dB less. It changes without delay.
const float kOpen = DbToGain(0) * DbToGain(0);
constexpr float kLoud = 0.3f;

void set_two_gains(Rack& rack, std::size_t i) {
  Dyn_SCoefsBlock& dyn = rack.dyn[i];
  const Dyn_SCoefsBlock plain{};
  std::ranges::copy(plain.keyFilter, dyn.keyFilter);
  std::ranges::copy(plain.detectorFilter, dyn.detectorFilter);
  dyn.keyFilter[0] = dyn.detectorFilter[0] = 1;
  dyn.detectorMode = 1;
  dyn.keyEnable = 0;
  dyn.compKneeA = dyn.compKneeB = 0;
  dyn.compKneeC = -12;
  dyn.compKneeLow = -50;
  dyn.compKneeHigh = dyn.compThreshold = 1000;
  dyn.expKneeLow = dyn.expKneeHigh = -1000;
  dyn.gateOpenThreshold = dyn.gateCloseThreshold = -1000;
  dyn.compAttack = dyn.compRelease = dyn.expAttack = dyn.expRelease = 1;
  dyn.compRange = -100;
  dyn.expHoldSamples = 0;
  std::ranges::fill(rack.eq[i].firstBand, 0);
  std::ranges::fill(rack.eq[i].endBand, 0);
  for (std::size_t c = 0; c < rack.channels; ++c) {
    Dyn_SState& state = rack.dyn_state[i * rack.channels + c];
    state = {};
    state.curCompRange = dyn.compRange;
    state.gateOpen = 1;
  }
}

// A different level, below -50 dB, for every group and sample.
float quiet_level(int32_t group, int sample) {
  return 1e-4f + 1e-6f * static_cast<float>(16 * group + sample);
}

// Makes each group loud up to a sample of its own and quiet from there on. Returns the level of the
// first quiet sample in the order of processing: by quads, then by the groups' lowest channels,
// then by samples.
float fall_quiet(Random& random, Rack& rack, std::size_t i) {
  int quiet_from[8];
  for (int& sample : quiet_from) sample = random.integer(1, 12);
  const auto groups = std::span(rack.dyn[i].linkGroup).first(rack.channels);
  for (std::size_t c = 0; c < rack.channels; ++c) {
    for (int s = 0; s < 16; ++s) {
      const bool loud = s < quiet_from[groups[c]];
      rack.input(i, c)[s] = loud ? kLoud : quiet_level(groups[c], s);
    }
  }
  for (int quad = 0; quad < 4; ++quad) {
    for (const int32_t group : groups) {
      const int first = quiet_from[group];
      if (first / 4 == quad) return quiet_level(group, first);
    }
  }
  return 0;
}

class EqualGains : public ReadoutsBeside {
 protected:
  // Starts the gain readouts at `gain` and makes a call. Calls check(readout, level) for every
  // instance with its level readout and the level at which its gain first reached its maximum.
  template <typename Check>
  static void for_random_starts(float gain, Check check) {
    Random random(1);
    for (unsigned trial = 0; trial < 20; ++trial) {
      Rack rack(GetParam(), enough_instances(GetParam()), 16, trial);
      std::vector<float> first;
      for (std::size_t i = 0; i < rack.size(); ++i) {
        set_two_gains(rack, i);
        set_readouts(rack, i, gain);
        first.push_back(fall_quiet(random, rack, i));
      }
      rack.process();
      for (std::size_t i = 0; i < rack.size(); ++i) {
        EXPECT_EQ(rack.readout(i, kGain), kOpen);
        check(rack.readout(i, kLevel), first[i]);
      }
    }
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, EqualGains, every_format(), format_name);

TEST_P(EqualGains, ShowTheLevelOfTheFirstQuadAndInItOfTheLowestLeader) {
  for (const float start : {0.01f, 0.0f, std::nextafter(kOpen, 0.0f)}) {
    for_random_starts(start, [](float level, float first) { EXPECT_EQ(level, first); });
  }
}

TEST_P(EqualGains, ToTheReadoutsStartLeaveItsLevel) {
  for_random_starts(kOpen, [](float level, float) { EXPECT_EQ(level, kOpen); });
}

}  // namespace
}  // namespace channelstrip::test::readouts_test
