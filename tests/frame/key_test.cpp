// Which input is the key. The level readout of a neutral strip is the linked level of the call's
// first sample.

#include <tests/support/every_format.h>
#include <tests/support/strip.h>

#include <cmath>

namespace channelstrip::test::key_test {
namespace {

class Key : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Key, every_format(), format_name);

// Input i is constant at 2^-i; there are two more inputs than channels.
class KeyedStrip : public Strip {
 public:
  explicit KeyedStrip(std::string_view format_name) : Strip(format_name, 32) {
    in.resize(in.size() + 1, std::vector<float>(32));
    for (size_t i = 0; i < in.size(); ++i) {
      std::fill(in[i].begin(), in[i].end(), std::ldexp(1.0f, -static_cast<int>(i)));
    }
    dyn.keyEnable = 1;
  }
  float detected_level() const { return readout(CHANNELSTRIP_METER_LEVEL); }
};

TEST_P(Key, IndexZeroMeansNoneWhateverInputsFollow) {
  KeyedStrip strip(format());
  std::fill(strip.in.back().begin(), strip.in.back().end(), 5.0f);
  strip.in[channels() - 1] = std::vector<float>(32, 3.0f);
  strip.key_index = 0;
  strip.process();
  EXPECT_EQ(strip.detected_level(), 3);
}

TEST_P(Key, AnyOtherIndexSelectsThatInput) {
  for (size_t k = 1; k <= channels() + 1; ++k) {
    KeyedStrip strip(format());
    strip.key_index = static_cast<int32_t>(k);
    strip.process();
    EXPECT_EQ(strip.detected_level(), std::ldexp(1.0f, -static_cast<int>(k)));
  }
}

TEST_P(Key, NegativeIndexSelectsAnInputBeforeTheFirst) {
  for (const bool in_memory : {false, true}) {
    KeyedStrip strip(format());
    std::vector<float> key(32, 0.375f);
    std::vector<float*> inputs = pointers(strip.in);
    inputs.insert(inputs.begin(), key.data());
    strip.key_index = -1;
    SChannelStrip_Alg_Context context = *strip.context();
    context.inputs = inputs.data() + 1;
    if (in_memory) {  // a count in written memory keeps the strip out of lanes
      strip.dyn_state[0].reserved14 = *context.sampleCount;
      context.sampleCount = &strip.dyn_state[0].reserved14;
    }
    const SChannelStrip_Alg_Context* const contexts[] = {&context};
    entry_point(GetParam())(contexts, contexts + 1);
    EXPECT_EQ(strip.detected_level(), 0.375f);
  }
}

TEST_P(Key, IsReadAheadOfTheEqualiser) {
  for (size_t k = 1; k <= channels() + 1; ++k) {
    KeyedStrip strip(format());
    strip.set_band(0, {4, 0, 0, 0, 0});
    strip.eq.endBand[0] = 1;
    strip.jump_to_targets();
    strip.key_index = static_cast<int32_t>(k);
    strip.process();
    EXPECT_EQ(strip.detected_level(), std::ldexp(1.0f, -static_cast<int>(k)));
  }
}

TEST_P(Key, InAnOutputBufferIsReadBehindTheFirstPass) {
  KeyedStrip strip(format());
  strip.set_band(0, {0.25f, 0, 0, 0, 0});
  strip.eq.endBand[0] = 1;
  strip.jump_to_targets();
  strip.key_index = strip.channels;
  std::vector<float*> inputs = pointers(strip.in);
  inputs[channels()] = strip.out.back().data();
  process_on(strip, inputs, pointers(strip.out));
  EXPECT_EQ(strip.detected_level(), 0.25f * strip.in[channels() - 1][0]);
}

// The index lies in the gate's field, which goes from 1 to 0 in the first quad. The detector filter
// is an identity, so its level is that of the last sample.
TEST_P(Key, IndexIsReadOncePerCall) {
  KeyedStrip strip(format());
  strip.in[1] = std::vector<float>(32, 0.125f);
  strip.dyn.gateOpenThreshold = strip.dyn.gateCloseThreshold = 1000;
  SChannelStrip_Alg_Context context = *strip.context();
  context.keyInputIndex = &strip.dyn_state[0].gateOpen;
  const SChannelStrip_Alg_Context* const contexts[] = {&context};
  entry_point(GetParam())(contexts, contexts + 1);
  EXPECT_EQ(strip.dyn_state[0].smoothLevel, 0.125f);
}

}  // namespace
}  // namespace channelstrip::test::key_test
