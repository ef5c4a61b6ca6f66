// What the context points to: buffers left untouched, in place, at any alignment of a float.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

namespace channelstrip::test::wiring_test {
namespace {

class Wiring : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Wiring, every_format(), format_name);

TEST_P(Wiring, ContextsAndTheirArrayAreLeftAsTheyWere) {
  BusyStrip strip(format());
  const SChannelStrip_Alg_Context* const contexts[] = {strip.context(), strip.context()};
  const SChannelStrip_Alg_Context before = *contexts[0];
  entry_point(GetParam())(contexts, contexts + 2);
  EXPECT_TRUE(same_record(*contexts[0], before));
  EXPECT_EQ(contexts[1], contexts[0]);
}

TEST_P(Wiring, PointersBehindAContextAreLeftAsTheyWere) {
  BusyStrip strip(format());
  const SChannelStrip_Alg_Context& context = *strip.context();
  process_on(strip, pointers(strip.in), pointers(strip.out));
  for (size_t c = 0; c < strip.in.size(); ++c) EXPECT_EQ(context.inputs[c], strip.in[c].data());
  for (size_t c = 0; c < channels(); ++c) EXPECT_EQ(context.outputs[c], strip.out[c].data());
  EXPECT_EQ(*context.meterOutputs, strip.meters.data());
}

TEST_P(Wiring, WhatIsTheHostsToWriteIsLeftAsItWas) {
  BusyStrip strip(format()), untouched(format());
  strip.process();
  EXPECT_TRUE(same_bits(strip.in, untouched.in));
  EXPECT_TRUE(same_record(strip.eq, untouched.eq));
  EXPECT_TRUE(same_record(strip.dyn, untouched.dyn));
  EXPECT_EQ(strip.key_index, untouched.key_index);
  EXPECT_EQ(strip.sample_count, untouched.sample_count);
  EXPECT_EQ(strip.dyn_state[0].dezipRate, untouched.dyn_state[0].dezipRate);
}

// Only the input meters differ: they run after the inputs have been overwritten.
TEST_P(Wiring, InPlaceEqualsSeparateBuffers) {
  BusyStrip in_place(format()), separate(format());
  process_on(in_place, pointers(in_place.in), pointers(in_place.in));
  separate.process();
  std::copy_n(in_place.in.begin(), channels(), in_place.out.begin());
  in_place.in = separate.in;
  std::copy_n(separate.meters.begin(), channels(), in_place.meters.begin());
  EXPECT_EQ(differences(in_place, separate), "");
}

TEST_P(Wiring, OneChannelInPlaceEqualsSeparateBuffers) {
  for (size_t c = 0; c < channels(); ++c) {
    BusyStrip in_place(format()), separate(format());
    std::vector<float*> outputs = pointers(in_place.out);
    outputs[c] = in_place.in[c].data();
    process_on(in_place, pointers(in_place.in), outputs);
    separate.process();
    in_place.out[c] = in_place.in[c];
    in_place.in[c] = separate.in[c];
    in_place.meters[c] = separate.meters[c];
    EXPECT_EQ(differences(in_place, separate), "") << c;
  }
}

// The samples, moved up by `shift` floats in buffers that are a block longer.
std::vector<std::vector<float>> shifted(const std::vector<std::vector<float>>& channels,
                                        size_t shift) {
  std::vector<std::vector<float>> result;
  for (const auto& channel : channels) {
    result.emplace_back(channel.size() + 16);
    std::ranges::copy(channel, result.back().begin() + static_cast<std::ptrdiff_t>(shift));
  }
  return result;
}

TEST_P(Wiring, BuffersNeedNoMoreThanAFloatsAlignment) {
  for (size_t in_shift = 0; in_shift < 8; ++in_shift) {
    for (size_t out_shift = 0; out_shift < 8; ++out_shift) {
      BusyStrip strip(format()), reference(format());
      auto in = shifted(strip.in, in_shift), out = shifted(strip.out, out_shift);
      process_on(strip, pointers(in, in_shift), pointers(out, out_shift));
      reference.process();
      EXPECT_TRUE(same_bits(out, shifted(reference.out, out_shift)));
    }
  }
}

TEST_P(Wiring, ChannelsMayBeAlignedDifferently) {
  BusyStrip strip(format()), reference(format());
  auto in = shifted(strip.in, 0), out = shifted(strip.out, 0);
  auto inputs = pointers(in), outputs = pointers(out);
  for (size_t c = 0; c < channels(); ++c) {
    inputs[c] += c % 4;
    outputs[c] += (c + 1) % 4;
    std::ranges::copy(strip.in[c], inputs[c]);
  }
  process_on(strip, inputs, outputs);
  reference.process();
  for (size_t c = 0; c < channels(); ++c) {
    EXPECT_TRUE(same_bits(std::span(outputs[c], 32), std::span(reference.out[c].data(), 32))) << c;
  }
}

}  // namespace
}  // namespace channelstrip::test::wiring_test
