// Which instances of a range are processed.

#include <tests/support/busy_strip.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>

namespace channelstrip::test::instances_test {
namespace {

class Instances : public EveryFormat {};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Instances, every_format(), format_name);

TEST_P(Instances, EmptyRangeTouchesNothing) {
  BusyStrip strip(format()), untouched(format());
  const SChannelStrip_Alg_Context* const contexts[] = {strip.context()};
  entry_point(GetParam())(contexts, contexts);
  EXPECT_EQ(differences(strip, untouched), "");
}

TEST_P(Instances, AreProcessedUpToTheEndAlone) {
  BusyStrip strip(format()), next(format()), untouched(format());
  const SChannelStrip_Alg_Context* const contexts[] = {strip.context(), next.context()};
  entry_point(GetParam())(contexts, contexts + 1);
  EXPECT_EQ(differences(next, untouched), "");
}

TEST_P(Instances, CountBelowOneIsSkippedUntouched) {
  for (const int32_t count : {0, -1, -16, INT32_MIN}) {
    BusyStrip before(format()), skipped(format()), behind(format()), untouched(format());
    skipped.sample_count = count;
    process_range({&before, &skipped, &behind});
    EXPECT_EQ(differences(skipped, untouched), "") << count;
  }
}

TEST_P(Instances, NeighboursOfASkippedOneAreProcessedAsEver) {
  BusyStrip before(format(), 32, 1), skipped(format()), behind(format(), 32, 2);
  BusyStrip before_alone(format(), 32, 1), behind_alone(format(), 32, 2);
  skipped.sample_count = 0;
  process_range({&before, &skipped, &behind});
  before_alone.process();
  behind_alone.process();
  EXPECT_EQ(differences(before, before_alone), "");
  EXPECT_EQ(differences(behind, behind_alone), "");
}

TEST_P(Instances, TwiceInOneRangeEqualsTwoCalls) {
  BusyStrip in_one_call(format()), in_two_calls(format());
  process_range({&in_one_call, &in_one_call});
  in_two_calls.process();
  in_two_calls.process();
  EXPECT_EQ(differences(in_one_call, in_two_calls), "");
}

}  // namespace
}  // namespace channelstrip::test::instances_test
