// `channelstrip info` as users and scripts meet it.

#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "../support/command.h"

namespace channelstrip::test::info_program_test {
namespace {

using Info = Command;

TEST_F(Info, ShowsOneFormat) {
  const ChildResult result = run({"info", "lcrs"});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_EQ(result.output, "");
  EXPECT_EQ(result.printed,
            "LCRS: 4 channels, 3 link groups in a strip, AlgEntry_16_Stem_LCRS\n"
            "\n"
            "order wav     L R C S\n"
            "order film    L C R S\n"
            "WAV mask      0x107\n"
            "\n"
            "link pairs    L R | C | S\n"
            "link film     L R C | S\n"
            "link music    L R C S\n"
            "link all      L R C S\n"
            "link none     L | R | C | S\n");
}

TEST_F(Info, ShowsTheLibraryAndEveryFormat) {
  const ChildResult result = run({"info"});
  EXPECT_EQ(result.exit_status, 0);
  for (const char* part :
       {CHANNELSTRIP_LIBRARY "\n", "\nlibsndfile    1.",
        "\nMono    1         1       M                      M                      0x4\n",
        "\n5.1     6         4       L R C LFE Ls Rs        L C R Ls Rs LFE        0x3F or "
        "0x60F\n"}) {
    EXPECT_NE(result.printed.find(part), std::string::npos) << part << '\n' << result.printed;
  }
}

TEST_F(Info, SpeaksJson) {
  const ChildResult result = run({"info", "--json", "5.1"});
  EXPECT_EQ(result.exit_status, 0);
  const auto json = nlohmann::json::parse(result.printed);
  ASSERT_EQ(json["formats"].size(), 1u);
  EXPECT_EQ(json["formats"][0]["name"], "5.1");
}

TEST_F(Info, MarksBandsThatSinglePrecisionDoesNotHold) {
  const std::vector<std::string> narrow{"info",         "--set",     "eq.1.frequency=20",
                                        "--set",        "eq.1.q=10", "--set",
                                        "eq.1.gain=12", "--rate",    "192000"};
  const ChildResult low = run(narrow);
  EXPECT_EQ(low.exit_status, 0);
  EXPECT_NE(low.printed.find("peak             20 Hz"), std::string::npos) << low.printed;
  EXPECT_NE(low.printed.find("--set eq.1.frequency=20  !\n"), std::string::npos) << low.printed;
  const ChildResult voice = run({"info", "--preset", "voice", "--json"});
  EXPECT_EQ(voice.exit_status, 0);
  const auto json = nlohmann::json::parse(voice.printed);
  EXPECT_EQ(json["sample_rate"], 48000);
  ASSERT_EQ(json["bands"].size(), 5u);
  EXPECT_EQ(json["bands"][0]["type"], "high_pass");
  EXPECT_LT(json["bands"][0]["deviation_db"], 0.01);
}

TEST_F(Info, RefusesWhatThereIsNot) {
  expect_refusal({"info", "--preset", "none"},
                 "none: no such file, and no preset that comes with the program; channelstrip "
                 "presets lists those");
  expect_refusal({"info", "9.1"},
                 "FORMAT: \"9.1\" is none of Mono, Stereo, LCR, Quad, LCRS, 5.0, 5.1, 6.0, 6.1, "
                 "7.0, 7.1");
  expect_refusal({"info", "--library", "libm.so.6"}, "libm.so.6 has no AlgEntry_16_Stem_Mono");
  expect_refusal({"info", "--library", "/none.so"},
                 "can't load the library: /none.so: cannot open shared object file: No such file "
                 "or directory");
}

}  // namespace
}  // namespace channelstrip::test::info_program_test
