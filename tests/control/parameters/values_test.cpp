// From values to settings that a strip can have.

#include "control/parameters/values.h"

#include <gtest/gtest.h>

#include <string>

#include "control/design/possible.h"

namespace channelstrip::test::values_test {
namespace {

using namespace host;

void set(Values& values, std::string_view symbol, double value) {
  values.of[*index_of(symbol)] = value;
}

StripSettings settings(const Values& values, AdjustedList* adjusted = nullptr) {
  return settings_of(values, 48000, adjusted);
}

TEST(Values, BeginAsNeutralSettings) {
  EXPECT_EQ(settings(Values()), StripSettings());
}

TEST(Values, ReachTheirSettings) {
  Values values;
  set(values, "gain_in", 3);
  set(values, "eq2_on", 1);
  set(values, "eq2_type", 4);
  set(values, "eq2_slope", 24);
  set(values, "eq5_on", 1);
  set(values, "eq5_frequency", 3000);
  set(values, "eq5_position", 1);
  set(values, "key_filter_on", 1);
  set(values, "key_filter_frequency", 200);
  set(values, "compressor_on", 1);
  set(values, "compressor_ratio", kInfiniteRatio);
  set(values, "detector_mode", 2);
  set(values, "link_style", 3);
  StripSettings wanted;
  wanted.gain_in = 3;
  wanted.pre = {{.type = BandType::kHighPass, .slope = 24}};
  wanted.post = {{.frequency = 3000}};
  wanted.key_filter = {.frequency = 200};
  wanted.compressor = {.ratio = kInfinity};
  wanted.detector.mode = DetectorMode::kAverage;
  wanted.link_style = LinkStyle::kAll;
  AdjustedList adjusted;
  EXPECT_EQ(settings(values, &adjusted), wanted);
  EXPECT_TRUE(adjusted.empty());
}

TEST(Values, OfAGateThatIsOffAreKept) {
  Values values;
  set(values, "expander_on", 1);
  set(values, "expander_hysteresis", 4);
  EXPECT_EQ(settings(values).expander->hysteresis, std::nullopt);
  set(values, "expander_gate", 1);
  EXPECT_EQ(settings(values).expander->hysteresis, 4);
}

TEST(Values, LeaveBandsOutThatTheRateHasNoRoomFor) {
  Values values;
  set(values, "eq1_on", 1);
  set(values, "eq1_frequency", 0.4998 * 48000);
  set(values, "eq2_on", 1);
  set(values, "eq2_frequency", 23990);
  AdjustedList adjusted;
  EXPECT_EQ(settings(values, &adjusted).pre.size(), 1u);
  ASSERT_EQ(adjusted.size(), 1u);
  EXPECT_EQ(adjusted[0].parameter, *index_of(std::string_view("eq1_frequency")));
  EXPECT_EQ(adjusted[0].adjustment, Adjustment::kLeftOutAboveRate);
}

TEST(Values, GiveSectionsToBandsInOrder) {
  Values values;
  for (const char* band : {"eq1_on", "eq2_on", "eq3_on"}) set(values, band, 1);
  for (const char* type : {"eq1_type", "eq2_type"}) set(values, type, 3);
  set(values, "eq1_slope", 72);
  set(values, "eq2_slope", 48);
  AdjustedList adjusted;
  const StripSettings fitted = settings(values, &adjusted);
  ASSERT_EQ(fitted.pre.size(), 2u);
  EXPECT_EQ(fitted.pre[0].slope, 72);
  EXPECT_EQ(fitted.pre[1].slope, 24);
  ASSERT_EQ(adjusted.size(), 2u);
  EXPECT_EQ(adjusted[0].adjustment, Adjustment::kShallower);
  EXPECT_EQ(adjusted[0].used, 24);
  EXPECT_EQ(adjusted[1].adjustment, Adjustment::kLeftOutForSections);
}

TEST(Values, RaiseFrequenciesThatFloatsCanNotHold) {
  Values values;
  set(values, "eq1_on", 1);
  set(values, "eq1_frequency", 1);
  AdjustedList adjusted;
  const StripSettings fitted = settings_of(values, 192000, &adjusted);
  EXPECT_EQ(fitted.pre[0].frequency, 3e-5 * 192000);
  ASSERT_EQ(adjusted.size(), 1u);
  EXPECT_EQ(adjusted[0].adjustment, Adjustment::kRaised);
  EXPECT_FALSE(refusal_of(fitted, 192000, default_layout(*find_stem_format("Mono"))));
}

TEST(Values, RaiseAShelfMoreWhosePolesLieBelowItsFrequency) {
  Values values;
  for (const char* symbol : {"eq1_on", "eq2_on", "eq3_on", "eq4_on"}) set(values, symbol, 1);
  for (const char* symbol : {"eq1_type", "eq2_type"}) set(values, symbol, 1);
  for (const char* symbol : {"eq3_type", "eq4_type"}) set(values, symbol, 2);
  for (const char* band : {"eq1", "eq2", "eq3", "eq4"})
    set(values, band + std::string("_frequency"), 1);
  for (const char* symbol : {"eq1_gain", "eq3_gain"}) set(values, symbol, 40);
  for (const char* symbol : {"eq2_gain", "eq4_gain"}) set(values, symbol, -40);
  const StripSettings fitted = settings_of(values, 100000);
  EXPECT_EQ(fitted.pre[1].frequency, 3);
  EXPECT_EQ(fitted.pre[2].frequency, 3);
  EXPECT_NEAR(fitted.pre[0].frequency, 9.487, 0.001);
  EXPECT_NEAR(fitted.pre[3].frequency, 9.487, 0.001);
}

TEST(Values, KeepTheKeyFilterToOneSection) {
  Values values;
  set(values, "key_filter_on", 1);
  set(values, "key_filter_type", 4);
  set(values, "key_filter_slope", 48);
  EXPECT_EQ(settings(values).key_filter->slope, 12);
}

}  // namespace
}  // namespace channelstrip::test::values_test
