// In what instances side by side may differ.

#include <cmath>
#include <limits>

#include "beside.h"

namespace channelstrip::test::neighbours_test {
namespace {

class Neighbours : public BesideEachOther {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Neighbours, every_format(), format_name);

TEST_P(Neighbours, MayBeAnyNumber) {
  for (std::size_t instances = 1; instances <= 20; ++instances) {
    const auto seed = static_cast<unsigned>(instances);
    EXPECT_EQ(difference_from_model(GetParam(), instances, 32, seed, [](Rack&) {}), "")
        << instances;
  }
}

TEST_P(Neighbours, MayHaveAnotherCount) {
  for (const int32_t count : {1, 16, INT32_MIN, -1, 0}) {
    expect_the_models_with_one([=](Rack& rack, std::size_t i) { rack.counts[i] = count; });
  }
}

TEST_P(Neighbours, MayHaveCountsThatProcessEquallyManySamples) {
  expect_the_models([](Rack& rack) {
    int32_t least = 1;
    for (int32_t& count : rack.counts) count = least++ % 2 == 0 ? 16 : 15;
  });
}

TEST_P(Neighbours, MayHaveOtherBandRanges) {
  for (const int pass : {0, 1}) {
    expect_the_models_with_one([=](Rack& rack, std::size_t i) { --rack.eq[i].endBand[pass]; });
    expect_the_models_with_one([=](Rack& rack, std::size_t i) { ++rack.eq[i].firstBand[pass]; });
    expect_the_models_with_one([=](Rack& rack, std::size_t i) {
      std::swap(rack.eq[i].firstBand[pass], rack.eq[i].endBand[pass]);
    });
  }
}

TEST_P(Neighbours, MayAllHaveEmptyRanges) {
  for (const int pass : {0, 1}) {
    expect_the_models([=](Rack& rack) {
      for (EQ_SCoefs& eq : rack.eq) std::swap(eq.firstBand[pass], eq.endBand[pass]);
    });
    expect_the_models([=](Rack& rack) {
      for (EQ_SCoefs& eq : rack.eq) eq.firstBand[pass] = eq.endBand[pass];
    });
  }
}

TEST_P(Neighbours, MayHaveABandInBothPasses) {
  expect_the_models_with_one([](Rack& rack, std::size_t i) { ++rack.eq[i].endBand[0]; });
  expect_the_models([](Rack& rack) {
    for (EQ_SCoefs& eq : rack.eq) ++eq.endBand[0];
  });
}

TEST_P(Neighbours, MayHaveModesOfTheirOwn) {
  for (unsigned first = 0; first < 32; first += 5) {
    expect_the_models([=](Rack& rack) {
      for (std::size_t i = 0; i < rack.size(); ++i) {
        const auto mode = [=](unsigned bit) { return static_cast<int>((first + i) >> bit & 1); };
        rack.dyn[i].bypass = mode(0);
        rack.dyn[i].keyListen = mode(1);
        rack.dyn[i].detectorMode = mode(2);
        rack.dyn[i].keyEnable = mode(3);
        rack.keys[i] = mode(4) * rack.format.channels;
      }
    });
  }
}

TEST_P(Neighbours, MayLinkTheirChannelsInAnyWay) {
  expect_the_models([](Rack& rack) {
    const int n = rack.format.channels, groups = rack.format.groups;
    for (std::size_t i = 0; i < rack.size(); ++i) {
      for (int c = 0; c < n; ++c) {
        const int maps[] = {0, groups - 1, c, n - 1 - c, c / 2};
        rack.dyn[i].linkGroup[c] = maps[i % std::size(maps)] % groups;
      }
    }
  });
}

// Puts `poison` in many places of an instance.
void spoil(Rack& rack, std::size_t i, float poison) {
  Dyn_SState& state = rack.dyn_state[i * rack.channels];
  state.compGain = state.keyZ1 = state.curMakeupGain = poison;
  rack.input(i, 0)[3] = rack.input(i, rack.channels)[5] = poison;
  rack.eq[i].targetCoefs[6] = poison;
  rack.dyn[i].expSlope = poison;
}

TEST_P(Neighbours, KeepTheirNaNsAndInfinitiesToThemselves) {
  for (const float poison :
       {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
    expect_the_models_with_one([=](Rack& rack, std::size_t i) { spoil(rack, i, poison); });
  }
}

}  // namespace
}  // namespace channelstrip::test::neighbours_test
