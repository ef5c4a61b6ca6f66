// Buffers that overlap each other, or the records.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

#include <cmath>

namespace channelstrip::test::shared_buffers_test {
namespace {

// The EQ pass before the dynamics takes each quad channel by channel, in ascending order, and reads
// all four samples of a channel before it writes any.
class SharedBuffers : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, SharedBuffers, every_format(), format_name);

constexpr int kSamples = 48;

// Noise on every input, halved exactly: a result tells how often it passed the band.
class HalvingStrip : public Strip {
 public:
  explicit HalvingStrip(std::string_view format_name) : Strip(format_name, kSamples) {
    Noise noise(5);
    for (auto& channel : in) std::generate(channel.begin(), channel.end(), noise);
    halve_exactly();
  }
};

std::vector<float> scaled(std::vector<float> samples, float factor) {
  for (float& sample : samples) sample *= factor;
  return samples;
}

// out[c] is in[c + 1], and the last output is in[0]; with two channels, they are swapped.
TEST_P(SharedBuffers, AChannelReadsWhatALowerOneWrote) {
  HalvingStrip strip(format());
  const std::vector<float> first = strip.in[0];
  strip.in.resize(channels());
  std::vector<float*> outputs = pointers(strip.in);
  std::rotate(outputs.begin(), outputs.begin() + 1, outputs.end());
  process_on(strip, pointers(strip.in), outputs);
  for (size_t c = 0; c < channels(); ++c) {
    const std::vector<float>& out = strip.in[(c + 1) % channels()];
    EXPECT_EQ(out, scaled(first, std::ldexp(1.0f, -static_cast<int>(c) - 1))) << c;
  }
}

// out[c] is in[c - 1], and the first output is the last input.
TEST_P(SharedBuffers, AChannelReadsBeforeAHigherOneWrites) {
  HalvingStrip strip(format());
  strip.in.resize(channels());
  const auto before = strip.in;
  std::vector<float*> outputs = pointers(strip.in);
  std::rotate(outputs.begin(), outputs.end() - 1, outputs.end());
  process_on(strip, pointers(strip.in), outputs);
  const size_t last = channels() - 1;
  for (size_t c = 0; c < last; ++c) {
    EXPECT_EQ(strip.in[(c + last) % channels()], scaled(before[c], 0.5f)) << c;
  }
  // The last input is the first output.
  const float passes = last == 0 ? 0.5f : 0.25f;
  EXPECT_EQ(strip.in[(2 * last) % channels()], scaled(before[0], passes));
}

TEST_P(SharedBuffers, AnOutputMayOverlapItsInputAtAnyDistance) {
  constexpr size_t kMargin = 20;
  for (size_t out_at = 0; out_at <= 2 * kMargin; ++out_at) {
    HalvingStrip strip(format());
    strip.in.resize(channels());
    for (auto& memory : strip.in) memory.insert(memory.begin(), kMargin, 0.0f);
    for (auto& memory : strip.in) memory.insert(memory.end(), kMargin, 0.0f);
    auto expected = strip.in;
    for (auto& memory : expected) {
      for (size_t i = 0; i < kSamples; i += 4) {
        float quad[4];
        for (size_t k = 0; k < 4; ++k) quad[k] = 0.5f * memory[kMargin + i + k];
        for (size_t k = 0; k < 4; ++k) memory[out_at + i + k] = quad[k];
      }
    }
    process_on(strip, pointers(strip.in, kMargin), pointers(strip.in, out_at));
    EXPECT_EQ(strip.in, expected) << out_at;
  }
}

// The last channel's audio remains; the dynamics and the second pass process it once per channel.
TEST_P(SharedBuffers, AllChannelsMayWriteOneBuffer) {
  HalvingStrip strip(format());
  strip.eq.firstBand[0] = strip.eq.endBand[0] = 0;
  strip.eq.endBand[1] = 1;
  process_on(strip, pointers(strip.in), std::vector<float*>(channels(), strip.out[0].data()));
  EXPECT_EQ(strip.out[0],
            scaled(strip.in[channels() - 1], std::ldexp(1.0f, -static_cast<int>(channels()))));
}

TEST_P(SharedBuffers, TheDynamicsGainGoesOverASharedOutputOncePerChannel) {
  HalvingStrip strip(format());
  strip.eq.endBand[0] = 0;
  strip.dyn.makeupGain /= 4;
  strip.jump_to_targets();
  process_on(strip, pointers(strip.in), std::vector<float*>(channels(), strip.out[0].data()));
  EXPECT_EQ(strip.out[0],
            scaled(strip.in[channels() - 1], std::ldexp(1.0f, -2 * static_cast<int>(channels()))));
}

TEST_P(SharedBuffers, AllInputsMayBeOneBuffer) {
  BusyStrip shared(format()), copies(format());
  process_on(shared, std::vector<float*>(channels(), shared.in[0].data()), pointers(shared.out));
  for (size_t c = 1; c < channels(); ++c) copies.in[c] = copies.in[0];
  copies.process();
  shared.in = copies.in;
  EXPECT_EQ(differences(shared, copies), "");
}

// Coefficients are read anew for every quad or block, not once per call. A host may not rewrite
// them during a call; here the strip does it itself, through a buffer that lies in a record.

void process(const SChannelStrip_Alg_Context& context) {
  const SChannelStrip_Alg_Context* const contexts[] = {&context};
  entry_point(format_named("Mono"))(contexts, contexts + 1);
}

// The output lies in targets 0 to 15; the four of the last quad are written after the last glide.
TEST(FreshReads, TargetsAreReadForEveryQuad) {
  Strip strip("Mono");
  strip.pass_exactly();
  strip.fill_inputs(0.5f);
  SChannelStrip_Alg_Context context = *strip.context();
  float* const output = strip.eq.targetCoefs;
  context.outputs = &output;
  process(context);
  for (int i = 0; i < 12; ++i) EXPECT_EQ(strip.dezip.coefs[i], 0.5f) << i;
  EXPECT_EQ(strip.dezip.coefs[15], 1.0f);
}

// Meter 0 lies in the makeup gain; the first block raises it to 0.5, which the second one reads.
TEST(FreshReads, DynamicsCoefficientsAreReadForEveryBlock) {
  Strip strip("Mono", 32);
  strip.fill_inputs(0.5f);
  strip.dyn.makeupGain = 0.25f;
  SChannelStrip_Alg_Context context = *strip.context();
  float* const meters = &strip.dyn.makeupGain;
  context.meterOutputs = &meters;
  process(context);
  EXPECT_EQ(strip.dyn_state[0].curMakeupGain, 0.5f);
}

}  // namespace
}  // namespace channelstrip::test::shared_buffers_test
