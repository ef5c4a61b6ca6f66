// A strip that may not be processed in lanes, because something it reads overlaps something it
// writes, gives the same bits as in lanes. The overlap here changes nothing: the count lies in the
// word of the state that is reserved for the host.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

namespace channelstrip::test::memory_route_test {
namespace {

class MemoryRoute : public EveryFormat {
 protected:
  template <typename Change>
  void expect_the_lanes_bits(Change change) {
    constexpr int kSamples = 160;
    BusyStrip in_lanes(format(), kSamples), in_memory(format(), kSamples);
    change(in_lanes);
    change(in_memory);
    in_lanes.dyn_state[0].reserved14 = in_memory.dyn_state[0].reserved14 = kSamples;
    in_lanes.process();
    SChannelStrip_Alg_Context context = *in_memory.context();
    context.sampleCount = &in_memory.dyn_state[0].reserved14;
    const SChannelStrip_Alg_Context* const range[] = {&context};
    entry_point(in_memory.format)(range, range + 1);
    EXPECT_EQ(differences(in_memory, in_lanes), "");
  }
};

INSTANTIATE_TEST_SUITE_P(EveryFormat, MemoryRoute, every_format(), format_name);

TEST_P(MemoryRoute, HasTheLanesBits) {
  expect_the_lanes_bits([](BusyStrip&) {});
}

TEST_P(MemoryRoute, HasThemWithAKey) {
  expect_the_lanes_bits([](BusyStrip& strip) {
    strip.key_index = strip.channels;
    strip.dyn.keyEnable = 1;
  });
}

TEST_P(MemoryRoute, HasThemWhileListening) {
  expect_the_lanes_bits([](BusyStrip& strip) { strip.dyn.keyListen = 1; });
}

TEST_P(MemoryRoute, HasThemInBypass) {
  expect_the_lanes_bits([](BusyStrip& strip) { strip.dyn.bypass = 1; });
}

TEST_P(MemoryRoute, HasThemOnSmoothedLevels) {
  expect_the_lanes_bits([](BusyStrip& strip) { strip.dyn.detectorMode = 1; });
}

// Gain terms of about 1000 and -3000 dB saturate the conversion at either end.
TEST_P(MemoryRoute, HasThemFarBeyondTheGainsRange) {
  for (const float slope : {10.0f, -30.0f}) {
    expect_the_lanes_bits([=](BusyStrip& strip) {
      strip.dyn.compThreshold = -120;
      strip.dyn.compKneeLow = strip.dyn.compKneeHigh = -130;
      strip.dyn.compSlope = slope;
      strip.dyn.compRange = -5000;
      for (Dyn_SState& state : strip.dyn_state) state.curCompRange = -5000;
      strip.dyn.compAttack = strip.dyn.compRelease = 1;
    });
  }
}

}  // namespace
}  // namespace channelstrip::test::memory_route_test
