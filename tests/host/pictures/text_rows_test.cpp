#include "host/pictures/text_rows.h"

#include <gtest/gtest.h>

namespace channelstrip::test::text_rows_test {
namespace {

using host::text_rows;

using Rows = std::vector<std::string_view>;

TEST(TextRows, BreakAtTheLastBlankThatFits) {
  EXPECT_EQ(text_rows("one two three", 13), Rows{"one two three"});
  EXPECT_EQ(text_rows("one two three", 12), (Rows{"one two", "three"}));
  EXPECT_EQ(text_rows("one two three", 7), (Rows{"one two", "three"}));
  EXPECT_EQ(text_rows("one two three", 6), (Rows{"one", "two", "three"}));
}

TEST(TextRows, CountCharactersNotBytes) {
  EXPECT_EQ(text_rows("Ö ö", 3), Rows{"Ö ö"});
}

TEST(TextRows, LongWordHasARowOfItsOwn) {
  EXPECT_EQ(text_rows("a endless b", 3), (Rows{"a", "endless", "b"}));
}

TEST(TextRows, EmptyTextHasNone) {
  EXPECT_EQ(text_rows("", 10), Rows{});
}

}  // namespace
}  // namespace channelstrip::test::text_rows_test
