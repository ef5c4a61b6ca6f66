#include "control/strip/link_change.h"

#include <gtest/gtest.h>

#include <array>

namespace channelstrip::test::link_change_test {
namespace {

using namespace host;

// Four channels with a record each.
std::array<Dyn_SState, 4> states(const std::array<float, 4>& gains) {
  std::array<Dyn_SState, 4> all{};
  for (std::size_t c = 0; c < 4; ++c) {
    all[c].compGain = gains[c];
    all[c].keyZ1 = static_cast<float>(c);
    all[c].holdCount = static_cast<int>(10 * c);
    all[c].dezipRate = c == 0 ? 0.5f : 0;
  }
  return all;
}

TEST(LinkChange, ChannelThatLeavesAGroupKeepsItsGain) {
  auto all = states({-20, -1, -2, -3});
  hand_over_gains(all, {0, 0, 0, 0}, {0, 0, 1, 1});
  EXPECT_EQ(all[0].compGain, -20);
  EXPECT_EQ(all[2].compGain, -20);
  EXPECT_EQ(all[2].holdCount, 0);  // record 0's
  EXPECT_EQ(all[1].compGain, -1);  // leads nothing
}

TEST(LinkChange, OfGroupsThatMeetTheLowerGainStays) {
  auto all = states({-1, -5, -20, -6});
  hand_over_gains(all, {0, 0, 1, 1}, {0, 0, 0, 0});
  EXPECT_EQ(all[0].compGain, -20);
  EXPECT_EQ(all[0].holdCount, 20);
}

TEST(LinkChange, GainIsTheSumOfBothTerms) {
  auto all = states({-6, -5, 0, 0});
  all[1].expGain = -2;
  hand_over_gains(all, {0, 1, 2, 3}, {0, 0, 1, 2});
  EXPECT_EQ(all[0].compGain, -5);
}

TEST(LinkChange, KeyFilterAndGlideRateStayWithTheChannel) {
  auto all = states({-1, -2, -3, -4});
  hand_over_gains(all, {0, 0, 1, 2}, {0, 1, 1, 0});
  for (std::size_t c = 0; c < 4; ++c) EXPECT_EQ(all[c].keyZ1, static_cast<float>(c));
  EXPECT_EQ(all[0].compGain, -4);
  EXPECT_EQ(all[0].dezipRate, 0.5f);
  EXPECT_EQ(all[1].compGain, -3);
  EXPECT_EQ(all[1].dezipRate, 0);
}

TEST(LinkChange, SameLinksLeaveEverythingAsItIs) {
  auto all = states({-1, -20, -3, -4});
  hand_over_gains(all, {0, 0, 1, 1}, {0, 0, 1, 1});
  EXPECT_EQ(all[0].compGain, -1);
  EXPECT_EQ(all[2].compGain, -3);
}

}  // namespace
}  // namespace channelstrip::test::link_change_test
