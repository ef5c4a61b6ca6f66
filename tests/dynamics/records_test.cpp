// Which fields of the dynamics records the library reads and writes.

#include "every_group.h"

namespace channelstrip::test::records_test {
namespace {

// A record with values that no processing would produce; its key filter is at rest.
Dyn_SState untouched_record() {
  Dyn_SState record;
  std::fill_n(reinterpret_cast<float*>(&record), sizeof record / sizeof(float), 12345.5f);
  record.keyZ1 = record.keyZ2 = 0;
  return record;
}

class Records : public EveryGroup {
 protected:
  // The key filter leaves memory behind.
  Records() { strip.dyn.keyFilter[1] = strip.dyn.keyFilter[2] = 0.5f; }

  // Processes with untouched_record() from channel `first` on.
  void expect_only_key_memory_touched_from(size_t first) {
    std::fill(strip.dyn_state.begin() + static_cast<ptrdiff_t>(first), strip.dyn_state.end(),
              untouched_record());
    play(kLevel);
    Dyn_SState expected = untouched_record();
    expected.keyZ1 = kLevel;
    expected.keyZ2 = kLevel / 2;
    for (size_t c = first; c < channels(); ++c) {
      EXPECT_TRUE(same_record(strip.dyn_state[c], expected)) << "channel " << c;
    }
  }
};
INSTANTIATE_TEST_SUITE_P(EveryFormat, Records, every_format(), format_name);

class FollowersRecords : public Records {};
INSTANTIATE_TEST_SUITE_P(FormatsWithFollowers, FollowersRecords, formats_with_followers(),
                         format_name);

TEST_P(FollowersRecords, AreUsedForTheirKeyFiltersMemoryAlone) {
  expect_only_key_memory_touched_from(groups());
}

TEST_P(FollowersRecords, AreAllButTheFirstWhenAllChannelsAreInTheLastGroup) {
  std::fill_n(strip.dyn.linkGroup, channels(), strip.format.groups - 1);
  expect_only_key_memory_touched_from(1);
  EXPECT_EQ(strip.dyn_state[0].smoothLevel, 2 * kLevel);
}

TEST_P(Records, NoneBeyondTheChannelsIsTouched) {
  strip.dyn_state.resize(9, untouched_record());
  play(kLevel);
  for (size_t c = channels(); c < 9; ++c) {
    EXPECT_TRUE(same_record(strip.dyn_state[c], untouched_record())) << "channel " << c;
  }
}

TEST_P(Records, HostsFieldsOfTheStateStay) {
  set_state(&Dyn_SState::reserved14, 0x5A5A5A5A);
  set_state(&Dyn_SState::dezipRate, 0.25f);
  play(kLevel);
  EXPECT_EQ(state(&Dyn_SState::reserved14), 0x5A5A5A5A);
  EXPECT_EQ(state(&Dyn_SState::dezipRate), 0.25f);
}

TEST_P(Records, CoefficientsStay) {
  strip.dyn.reserved12 = 0x5A5A5A5A;
  const Dyn_SCoefsBlock before = strip.dyn;
  play(kLevel);
  EXPECT_TRUE(same_record(strip.dyn, before));
}

TEST_P(Records, UnnamedWordsAreNotRead) {
  play(kLevel);
  const auto out = strip.out;
  const auto meters = strip.meters;
  strip.dyn.reserved12 = 0x7FC00000;  // NaN as a float
  set_state(&Dyn_SState::reserved14, 0x7FC00000);
  play(kLevel);
  EXPECT_EQ(strip.out, out);
  EXPECT_EQ(strip.meters, meters);
}

}  // namespace
}  // namespace channelstrip::test::records_test
