// channelstrip curves of a preset whose settings change in time.

#include <gtest/gtest.h>

#include <string>

#include "../support/command.h"
#include "golden.h"

namespace channelstrip::test::curve_changes_test {
namespace {

class CurveChanges : public Command {
 protected:
  // Curves at `time`, as text.
  std::string text_at(const std::string& time) const {
    const ChildResult result = run({"curves", preset, "--at", time});
    EXPECT_EQ(result.output, "");
    return result.printed;
  }

  const std::string preset = folder.write("ride.toml",
                                          "name = \"Narration, bright for the credits\"\n"
                                          "[[eq]]\n"
                                          "frequency = 1000\n"
                                          "q = 2\n"
                                          "gain = 6\n"
                                          "[[at]]\n"
                                          "time = 62.5\n"
                                          "eq.1.gain = 3\n"
                                          "[[at]]\n"
                                          "time = 4\n"
                                          "eq.1.gain = -4\n"
                                          "[[at]]\n"
                                          "time = 70\n"
                                          "eq.1.frequency = 1250\n");
};

// The band's row in the table, up to its frequency and gain.
std::string band(const std::string& text) {
  const std::size_t row = text.find("   1  pre ");
  return row == std::string::npos ? text : text.substr(row, 41);
}

TEST_F(CurveChanges, SettingsShownAreThoseInForce) {
  EXPECT_EQ(band(text_at("0")), "   1  pre   peak           1000.0     6.0");
  EXPECT_EQ(band(text_at("3.9")), "   1  pre   peak           1000.0     6.0");
  EXPECT_EQ(band(text_at("4")), "   1  pre   peak           1000.0    -4.0");
  EXPECT_EQ(band(text_at("69.9")), "   1  pre   peak           1000.0     3.0");
  EXPECT_EQ(band(text_at("inf")), "   1  pre   peak           1250.0     3.0");
}

TEST_F(CurveChanges, BeginWithoutATime) {
  EXPECT_EQ(run({"curves", preset}).printed, text_at("0"));
}

TEST_F(CurveChanges, HeadingSaysHowLongTheSettingsHoldAndWhenTheyChange) {
  const std::string changes =
      "Settings change at 4.000 s, 1 min 02.500 s, 1 min 10.000 s\n"
      "\nband ";
  const std::string name = "Narration, bright for the credits at 48000 Hz, from ";
  EXPECT_TRUE(text_at("0").starts_with(name + "0.000 s to 4.000 s\n" + changes));
  EXPECT_TRUE(text_at("5").starts_with(name + "4.000 s to 1 min 02.500 s\n" + changes));
  EXPECT_TRUE(text_at("1e6").starts_with(name + "1 min 10.000 s on\n" + changes));
}

TEST_F(CurveChanges, AtTheVeryBeginningAreInForceFromThere) {
  const std::string early =
      folder.write("early.toml", "[compressor]\nratio = 2\n[[at]]\ntime = 0\ncompressor.ratio = 1");
  EXPECT_TRUE(run({"curves", early})
                  .printed.starts_with(early + " at 48000 Hz, from 0.000 s on\n"
                                               "Settings change at 0.000 s\n"));
  EXPECT_NE(run({"curves", early}).printed.find("\n          0         0.0 "), std::string::npos);
}

TEST_F(CurveChanges, TimeSaysNothingWhereSettingsNeverChange) {
  EXPECT_EQ(run({"curves", "--at", "9"}).printed, run({"curves"}).printed);
}

TEST_F(CurveChanges, LookAsTheyDid) {
  const std::string picture = folder.file("ride.svg");
  ASSERT_EQ(run({"curves", preset, "--at", "5", "-o", picture}).output, "");
  expect_golden("changes.svg", contents(picture));
}

TEST_F(CurveChanges, RefuseATimeBeforeTheBeginning) {
  expect_refusal({"curves", preset, "--at", "-1"}, "--at: -1 s is not 0 s or more");
  expect_refusal({"curves", preset, "--at", "nan"}, "--at: nan s is not 0 s or more");
}

}  // namespace
}  // namespace channelstrip::test::curve_changes_test
