#include "host/report/words.h"

#include <gtest/gtest.h>

#include <limits>

#include "host/report/html.h"

namespace channelstrip::test {
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

TEST(Html, TextIsEscapedAndTheFirstColumnNamesRows) {
  EXPECT_EQ(html({.caption = "a<b", .columns = {"", "x"}, .rows = {{"r&d", "\"1\""}}}),
            "<div class=\"wide\" tabindex=\"0\">\n<table class=\"numbers\">\n"
            "<caption>a&lt;b</caption>\n"
            "<thead><tr><th scope=\"col\"></th><th scope=\"col\">x</th></tr></thead>\n<tbody>\n"
            "<tr><th scope=\"row\">r&amp;d</th><td>&quot;1&quot;</td></tr>\n"
            "</tbody>\n</table>\n</div>\n");
}

}  // namespace
}  // namespace channelstrip::test
