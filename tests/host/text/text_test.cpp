#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "control/text/text_file.h"
#include "host/text/encoding.h"
#include "host/text/wording.h"

namespace channelstrip::test::text_test {
namespace {

using namespace host;
using namespace std::string_view_literals;

TEST(TextFile, AnyEncodingBecomesUtf8) {
  EXPECT_EQ(to_utf8("Küche €"), "Küche €");
  EXPECT_EQ(to_utf8("\xEF\xBB\xBFKüche"), "Küche");
  EXPECT_EQ(to_utf8("\xFF\xFEK\0\xFC\0\xAC\x20"sv), "Kü€");
  EXPECT_EQ(to_utf8("\xFE\xFF\0K\0\xFC\x20\xAC"sv), "Kü€");
  EXPECT_EQ(to_utf8("\xFF\xFE\x3D\xD8\x00\xDE"sv), "😀");
  EXPECT_EQ(to_utf8("K\xFC"
                    "che"),
            "Küche");
  EXPECT_EQ(to_utf8(""), "");
}

TEST(TextFile, BrokenEncodingIsReadByteByByte) {
  EXPECT_EQ(to_utf8("\xFF\xFEK"sv), "ÿþK");  // half a UTF-16 unit
  EXPECT_EQ(to_utf8("\xEF\xBB\xBF\xFC"sv),
            "ï»¿ü");  // a byte order mark before text that isn't UTF-8
}

TEST(TextFile, LinesMayEndInAnyWay) {
  EXPECT_EQ(split_lines("a\nb\r\n\nc\rd"), (std::vector<std::string>{"a", "b", "", "c", "d"}));
  EXPECT_EQ(split_lines("a\n"), std::vector<std::string>{"a"});
  EXPECT_EQ(split_lines(""), std::vector<std::string>{});
}

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

// U+0080 to U+009F, of which U+009B begins a terminal's commands as ESC [ does.
TEST(OneLine, HasNoneOfTheUpperControlCharacters) {
  EXPECT_EQ(one_line("a\u009B31mb\u0080\u009F\u00A0ä"), "a?31mb??\u00A0ä");
  EXPECT_EQ(one_line("\xC2"), "\xC2");
}

}  // namespace
}  // namespace channelstrip::test::text_test
