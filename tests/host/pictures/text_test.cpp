// Text in pictures: broken into rows, and escaped for XML.

#include <gtest/gtest.h>

#include <string_view>
#include <vector>

#include "host/pictures/text_rows.h"
#include "host/pictures/xml.h"

namespace channelstrip::test::text_test {
namespace {

using namespace host;

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

TEST(EscapeXml, EscapesWhatMarkupIsMadeOf) {
  EXPECT_EQ(escape_xml("a<b>&\"c\" 'd'"), "a&lt;b&gt;&amp;&quot;c&quot; &#39;d&#39;");
}

TEST(EscapeXml, KeepsCharactersOfAnyLength) {
  const char* text = "Grün 7\u00b0 \u2212 \U0001F3A7\t\n";
  EXPECT_EQ(escape_xml(text), text);
}

TEST(EscapeXml, ReplacesWhatXmlCannotHold) {
  EXPECT_EQ(escape_xml("a\x01\x7f"), "a\uFFFD\uFFFD");
  EXPECT_EQ(escape_xml("\uFFFE"), "\uFFFD\uFFFD\uFFFD");
}

TEST(EscapeXml, ReplacesBytesThatAreNotUtf8) {
  EXPECT_EQ(escape_xml("a\xE4z"), "a\uFFFDz");        // Latin-1
  EXPECT_EQ(escape_xml("\xC3"), "\uFFFD");            // cut
  EXPECT_EQ(escape_xml("\xC0\xAF"), "\uFFFD\uFFFD");  // overlong
  EXPECT_EQ(escape_xml("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD");
  EXPECT_EQ(escape_xml("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");            // surrogate
  EXPECT_EQ(escape_xml("\xF4\x90\x80\x80"), "\uFFFD\uFFFD\uFFFD\uFFFD");  // above U+10FFFF
}

TEST(Length, CountsCharacters) {
  EXPECT_EQ(length("\u221212 dB"), 6);
}

}  // namespace
}  // namespace channelstrip::test::text_test
