// Values as people read and write them.

#include "control/parameters/value_text.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace channelstrip::test::value_text_test {
namespace {

using namespace host;

const Parameter& parameter(std::string_view symbol) {
  return parameters()[*index_of(symbol)];
}

std::string text(std::string_view symbol, double value) {
  return value_text(parameter(symbol), value);
}

std::optional<double> value(std::string_view symbol, std::string_view text) {
  return value_from(parameter(symbol), text);
}

TEST(ValueText, HasTheUnitThatReadsBest) {
  EXPECT_EQ(text("eq1_frequency", 80), "80 Hz");
  EXPECT_EQ(text("eq1_frequency", 2500), "2.5 kHz");
  EXPECT_EQ(text("eq1_frequency", 12345.6), "12.35 kHz");
  EXPECT_EQ(text("compressor_attack", 0.5), "0.5 ms");
  EXPECT_EQ(text("compressor_release", 1500), "1.5 s");
  EXPECT_EQ(text("compressor_threshold", -18), "-18 dB");
  EXPECT_EQ(text("compressor_threshold", -0.0), "0 dB");
  EXPECT_EQ(text("eq1_slope", 24), "24 dB/oct");
  EXPECT_EQ(text("mix", 60), "60 %");
  EXPECT_EQ(text("eq1_q", 0.70714), "0.7071");
}

TEST(ValueText, NamesWhatIsNoNumber) {
  EXPECT_EQ(text("compressor_ratio", 4), "4:1");
  EXPECT_EQ(text("compressor_ratio", 1000), "inf:1");
  EXPECT_EQ(text("expander_ratio", 100), "100:1");
  EXPECT_EQ(text("eq1_shelf_slope", 0), "off");
  EXPECT_EQ(text("eq1_on", 1), "on");
  EXPECT_EQ(text("eq1_type", 3), "low_pass");
}

TEST(ValueText, IsReadWithAndWithoutItsUnit) {
  EXPECT_EQ(value("eq1_frequency", "2.5 kHz"), 2500);
  EXPECT_EQ(value("eq1_frequency", "2.5k"), 2500);
  EXPECT_EQ(value("eq1_frequency", " 250 "), 250);
  EXPECT_EQ(value("compressor_release", "1.5 s"), 1500);
  EXPECT_EQ(value("compressor_threshold", "-18dB"), -18);
  EXPECT_EQ(value("eq1_gain", "+3"), 3);
  EXPECT_EQ(value("eq1_slope", "24 dB"), 24);
  EXPECT_EQ(value("compressor_ratio", "4:1"), 4);
  EXPECT_EQ(value("compressor_ratio", "inf:1"), kInfiniteRatio);
  EXPECT_EQ(value("compressor_ratio", "inf"), kInfiniteRatio);
  EXPECT_EQ(value("eq1_on", "Yes"), 1);
  EXPECT_EQ(value("eq1_type", "High_Pass"), 4);
  EXPECT_EQ(value("eq1_gain", "99"), 40);
}

TEST(ValueText, IsRefusedWhereItMeansNothing) {
  for (const char* nonsense : {"", " ", "loud", "nan", "3 m", "1..2", "--3", "4:2"}) {
    EXPECT_EQ(value("eq1_gain", nonsense), std::nullopt) << nonsense;
    EXPECT_EQ(value("eq1_type", nonsense), std::nullopt) << nonsense;
    EXPECT_EQ(value("eq1_on", nonsense), std::nullopt) << nonsense;
  }
  EXPECT_EQ(value("eq1_gain", "3 kHz"), std::nullopt);
}

TEST(ValueText, OfEveryParameterReadsBackToFourDigits) {
  for (const Parameter& p : parameters()) {
    for (int i = 0; i <= 20; ++i) {
      const double given = value_at(p, i / 20.0);
      const auto read = value_from(p, value_text(p, given));
      ASSERT_TRUE(read) << p.symbol << ": " << value_text(p, given);
      EXPECT_NEAR(*read, given, 6e-4 * std::abs(given)) << p.symbol;
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::value_text_test
