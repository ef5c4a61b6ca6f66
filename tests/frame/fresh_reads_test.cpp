// What is read anew for every quad or block, and not once per call. A host may not rewrite
// coefficients during a call; here the strip does it itself, by a buffer that lies in a record.

#include <gtest/gtest.h>
#include <tests/support/strip.h>

namespace channelstrip::test::fresh_reads_test {
namespace {

void process(const SChannelStrip_Alg_Context& context) {
  const SChannelStrip_Alg_Context* const contexts[] = {&context};
  entry_point(format_named("Mono"))(contexts, contexts + 1);
}

// The output lies in targets 0 to 15; those that the last quad writes come too late for a glide.
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

// Meter 0 lies in the makeup, and the first block raises it to 0.5.
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
}  // namespace channelstrip::test::fresh_reads_test
