#include "host/pictures/xml.h"

#include <gtest/gtest.h>

namespace channelstrip::test::xml_test {
namespace {

using namespace host;

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
}  // namespace channelstrip::test::xml_test
