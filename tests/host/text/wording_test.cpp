#include "host/text/wording.h"

#include <gtest/gtest.h>

#include <limits>

namespace channelstrip::test::wording_test {
namespace {

using namespace host;

constexpr double kInfinite = std::numeric_limits<double>::infinity();

TEST(Words, NumbersHaveAProperMinusAndNoMinusZero) {
  EXPECT_EQ(number(-6.04), "−6.0");
  EXPECT_EQ(number(12.25, 2), "12.25");
  EXPECT_EQ(number(-0.04), "0.0");
  EXPECT_EQ(number(-kInfinite), "−∞");
}

TEST(Words, WhatIsNotThereIsADash) {
  EXPECT_EQ(number(std::optional<double>()), "–");
  EXPECT_EQ(number(std::optional(1.0)), "1.0");
}

TEST(Words, ChangesHaveTheirSign) {
  EXPECT_EQ(change(-23.0, -16.5), "+6.5");
  EXPECT_EQ(change(-16.5, -23.0), "−6.5");
  EXPECT_EQ(change(1.0, 1.01), "0.0");
  EXPECT_EQ(change(std::nullopt, 1.0), "–");
  EXPECT_EQ(change(-kInfinite, -20.0), "–");
}

TEST(Duration, HasMilliseconds) {
  EXPECT_EQ(duration(0), "0.000 s");
  EXPECT_EQ(duration(4.2), "4.200 s");
  EXPECT_EQ(duration(59.9994), "59.999 s");
}

TEST(Duration, HasMinutesFromOneOn) {
  EXPECT_EQ(duration(59.9996), "1 min 00.000 s");
  EXPECT_EQ(duration(184.2), "3 min 04.200 s");
  EXPECT_EQ(duration(7199.9999), "120 min 00.000 s");
}

TEST(OneLine, HasNoControlCharacters) {
  EXPECT_EQ(one_line("a\nb\x7f\tä"), "a?b??ä");
  EXPECT_EQ(one_line("a\r\nb", ' '), "a  b");
}

}  // namespace
}  // namespace channelstrip::test::wording_test
