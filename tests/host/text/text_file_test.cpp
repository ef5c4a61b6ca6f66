#include "host/text/text_file.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace channelstrip::test::text_file_test {
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
  EXPECT_EQ(to_utf8("\xFF\xFEK"sv), "ÿþK");          // half a UTF-16 unit
  EXPECT_EQ(to_utf8("\xEF\xBB\xBF\xFC"sv), "ï»¿ü");  // a mark alone makes no UTF-8
}

TEST(TextFile, LinesMayEndInAnyWay) {
  EXPECT_EQ(split_lines("a\nb\r\n\nc\rd"), (std::vector<std::string>{"a", "b", "", "c", "d"}));
  EXPECT_EQ(split_lines("a\n"), std::vector<std::string>{"a"});
  EXPECT_EQ(split_lines(""), std::vector<std::string>{});
}

}  // namespace
}  // namespace channelstrip::test::text_file_test
