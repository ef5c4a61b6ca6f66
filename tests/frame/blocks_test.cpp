// Processing is in whole blocks of 16, whatever the count.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

namespace channelstrip::test::blocks_test {
namespace {

class Blocks : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Blocks, every_format(), format_name);

constexpr int kCapacity = 64;

struct Case {
  int32_t count;
  size_t processed;
};
constexpr Case kCases[] = {{1, 16}, {15, 16}, {16, 16}, {17, 32}, {20, 32}, {32, 32}, {33, 48}};

TEST_P(Blocks, CountIsRoundedUpToAWholeBlock) {
  for (const auto [count, processed] : kCases) {
    BusyStrip strip(format(), kCapacity), whole(format(), kCapacity);
    strip.sample_count = count;
    strip.process();
    whole.sample_count = static_cast<int32_t>(processed);
    whole.process();
    EXPECT_EQ(differences(strip, whole), "") << count;
  }
}

// The outputs held 77 before the call.
void process_over_77(BusyStrip& strip, int32_t count) {
  for (auto& channel : strip.out) std::fill(channel.begin(), channel.end(), 77.0f);
  strip.sample_count = count;
  strip.process();
}

TEST_P(Blocks, EverySampleOfABlockIsWritten) {
  for (const auto [count, processed] : kCases) {
    BusyStrip strip(format(), kCapacity);
    process_over_77(strip, count);
    for (const auto& channel : strip.out) {
      EXPECT_EQ(std::ranges::find(channel, 77.0f) - channel.begin(),
                static_cast<std::ptrdiff_t>(processed))
          << count;
    }
  }
}

TEST_P(Blocks, NothingIsWrittenBehindTheLastBlock) {
  for (const auto [count, processed] : kCases) {
    BusyStrip strip(format(), kCapacity);
    process_over_77(strip, count);
    for (const auto& channel : strip.out) {
      EXPECT_TRUE(std::all_of(channel.begin() + static_cast<std::ptrdiff_t>(processed),
                              channel.end(), [](float sample) { return sample == 77.0f; }))
          << count;
    }
  }
}

TEST_P(Blocks, LastSampleOfABlockIsMetered) {
  for (const auto [count, processed] : kCases) {
    Strip strip(format(), kCapacity);
    strip.in[0][processed - 1] = 3;
    strip.sample_count = count;
    strip.process();
    EXPECT_EQ(strip.input_peak(0), 3) << count;
  }
}

TEST_P(Blocks, NothingBehindTheLastBlockIsMetered) {
  for (const auto [count, processed] : kCases) {
    Strip strip(format(), kCapacity);
    strip.in[0][processed] = strip.out[0][processed] = 3;
    strip.sample_count = count;
    strip.process();
    EXPECT_EQ(strip.input_peak(0), 0) << count;
    EXPECT_EQ(strip.output_peak(0), 0) << count;
  }
}

TEST_P(Blocks, CoefficientsGlideFourTimesInEach) {
  for (const auto [count, processed] : kCases) {
    Strip strip(format(), kCapacity);
    strip.eq.targetCoefs[7] = 1;
    strip.dyn_state[0].dezipRate = 0.5f;
    strip.sample_count = count;
    strip.process();
    double distance = 1;
    for (size_t quad = 0; quad < processed / 4; ++quad) distance /= 2;
    EXPECT_EQ(strip.dezip.smoothedCoefs[7], 1 - distance) << count;
  }
}

TEST_P(Blocks, OneCallEqualsOneCallPerBlock) {
  BusyStrip in_one_call(format(), kCapacity), in_many(format(), kCapacity);
  in_one_call.process();

  in_many.sample_count = 16;
  for (size_t block = 0; block < kCapacity; block += 16) {
    process_on(in_many, pointers(in_many.in, block), pointers(in_many.out, block));
  }
  EXPECT_EQ(differences(in_one_call, in_many), "");
}

// The count lies in the hold counter, which counts down during the call.
TEST_P(Blocks, CountIsReadOncePerCall) {
  BusyStrip strip(format(), kCapacity), reference(format(), kCapacity);
  for (BusyStrip* const each : {&strip, &reference}) {
    each->dyn_state[0].gateOpen = 0;
    each->dyn_state[0].holdCount = kCapacity;
    each->dyn.gateOpenThreshold = 1000;  // never opens, so the hold counter runs out
  }
  SChannelStrip_Alg_Context context = *strip.context();
  context.sampleCount = &strip.dyn_state[0].holdCount;
  const SChannelStrip_Alg_Context* const contexts[] = {&context};
  entry_point(GetParam())(contexts, contexts + 1);
  reference.process();
  EXPECT_EQ(differences(strip, reference), "");
}

}  // namespace
}  // namespace channelstrip::test::blocks_test
