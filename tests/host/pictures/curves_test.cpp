// channelstrip curves, as users and scripts meet it.

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "../support/command.h"
#include "golden.h"

namespace channelstrip::test::curves_test {
namespace {

class Curves : public Command {
 protected:
  const std::string preset = folder.write("strip.toml",
                                          "name = \"Test <1>\"\n"
                                          "[[eq]]\n"
                                          "type = \"peak\"\n"
                                          "frequency = 1000\n"
                                          "q = 2\n"
                                          "gain = 6\n"
                                          "[[eq]]\n"
                                          "type = \"high_pass\"\n"
                                          "frequency = 100\n"
                                          "position = \"post\"\n"
                                          "[compressor]\n"
                                          "threshold = -20\n"
                                          "ratio = 4\n"
                                          "knee = 0\n"
                                          "attack = 5\n"
                                          "release = 50\n"
                                          "makeup = 3\n"
                                          "[expander]\n"
                                          "threshold = -40\n"
                                          "ratio = 2\n"
                                          "knee = 0\n"
                                          "attack = 1\n"
                                          "release = 80\n"
                                          "hold = 10\n"
                                          "range = -30\n"
                                          "hysteresis = 6\n"
                                          "[detector]\n"
                                          "time = 1\n");
};

TEST_F(Curves, LookAsTheyDid) {
  const std::string picture = folder.file("strip.svg");
  ASSERT_EQ(run({"curves", preset, "-o", picture}).output, "");
  expect_golden("strip.svg", contents(picture));
}

// A peak band has its gain at its frequency, a Butterworth pass -3 dB. At 20 dB above its threshold
// the compressor takes 15 dB off, and the makeup adds 3 dB.
TEST_F(Curves, TextTellsWhatFollowsFromTheSettings) {
  const std::string text = run({"curves", preset}).printed;
  for (const char* line : {"Test <1> at 48000 Hz\n",
                           "   1  pre   peak           1000.0     6.0        2       -         1",
                           "   2  post  high pass       100.0       -   0.7071      12         1",
                           "     1000      6.0      0.0      6.0               |###\n",
                           "      100      0.0     -3.0     -3.0              #|\n",
                           "          0       -15.0       0.0       3.0     -12.0           -\n",
                           "        -20         0.0       0.0       3.0     -17.0           -\n",
                           "        -45         0.0      -5.0       3.0     -47.0       -72.0\n",
                           "        -50         0.0     -10.0       3.0         -       -77.0\n"}) {
    EXPECT_NE(text.find(line), std::string::npos) << line << "\nis not in\n" << text;
  }
}

// A gain term covers 63.2 % of a fall within its attack. The detector's level falls by 8.7 dB per
// millisecond: so the compressor's target takes up to 1.4 ms from -8 dBFS to the threshold, and the
// expander's hold begins after 32 / 8.7 ms.
// At 60 Hz, between the third octaves 50 and 63 Hz, where it takes off nearly nothing.
TEST_F(Curves, TextShowsANotchHoweverNarrow) {
  const std::string hum =
      folder.write("hum.toml", "[[eq]]\ntype = \"notch\"\nfrequency = 60\nq = 100\n");
  const std::string text = run({"curves", hum}).printed;
  EXPECT_NE(text.find("\n       50      0.0      0.0      0.0 "), std::string::npos) << text;
  const std::string row = "\n       60 ";
  const std::size_t found = text.find(row);
  ASSERT_NE(found, std::string::npos) << text;
  EXPECT_LT(std::stod(text.substr(found + row.size(), 9)), -60) << text;
}

TEST_F(Curves, TimesAreMeasured) {
  const std::string text = run({"curves", preset}).printed;
  const auto measured = [&](const std::string& row) {
    const std::size_t found = text.find(row);
    EXPECT_NE(found, std::string::npos) << row << "\nis not in\n" << text;
    return found == std::string::npos ? 0 : std::stod(text.substr(found + row.size(), 14));
  };
  EXPECT_NEAR(measured("\ncompressor         5        -       50           5.0"), 50.7, 0.8);
  EXPECT_NEAR(measured("\nexpander           1       10       80           1.0"), 93.7, 0.2);
}

TEST_F(Curves, OfANeutralStripAreFlat) {
  const std::string text = run({"curves"}).printed;
  EXPECT_TRUE(text.starts_with("Neutral strip at 48000 Hz\n\nNo bands\n")) << text;
  EXPECT_NE(text.find("     1000      0.0      0.0      0.0               |\n"), std::string::npos);
  EXPECT_EQ(text.find("compressor"), std::string::npos);
  const std::string picture = folder.file("neutral.svg");
  EXPECT_EQ(run({"curves", "-o", picture}).exit_status, 0);
  EXPECT_TRUE(contents(picture).ends_with("</svg>\n"));
}

TEST_F(Curves, AssignmentsStandOverThePreset) {
  const std::string text = run({"curves", preset, "--set", "compressor.makeup=0"}).printed;
  EXPECT_NE(text.find("          0       -15.0       0.0       0.0     -15.0           -\n"),
            std::string::npos)
      << text;
}

TEST_F(Curves, FormatTellsTheLinks) {
  EXPECT_TRUE(run({"curves", preset, "--format", "5.1"})
                  .printed.ends_with("\nlinked in 5.1: L R | C | LFE | Ls Rs\n"));
}

TEST_F(Curves, PictureIsAPngWhereItsNameSaysSo) {
  const std::string picture = folder.file("strip.PNG");
  const ChildResult result = run({"curves", preset, "--text", "-o", picture});
  EXPECT_EQ(result.exit_status, 0);
  EXPECT_TRUE(result.printed.starts_with("Test <1> at 48000 Hz\n"));
  const std::string png = contents(picture);
  EXPECT_TRUE(png.starts_with("\x89PNG\r\n\x1A\n"));
  EXPECT_EQ(png.substr(16, 4), std::string("\0\0\x04\x60", 4));  // 1120 pixels wide
}

TEST_F(Curves, RefuseWhatIsNoPicture) {
  const std::string picture = folder.file("strip.gif");
  expect_refusal({"curves", preset, "-o", picture},
                 picture + ": a picture's name ends in .svg or .png");
}

TEST_F(Curves, RefuseABandAboveHalfTheSampleRate) {
  expect_refusal(
      {"curves", preset, "--rate", "1500"},
      preset + ":4:1: eq.1: frequency 1000 Hz is not below half the sample rate 1500 Hz");
}

TEST_F(Curves, RefuseASampleRateThatNoAudioHas) {
  expect_refusal({"curves", "--rate", "5"}, "--rate: 5 Hz is not 1000 to 768000 Hz");
}

TEST_F(Curves, RefuseAFolderTheyCannotWriteTo) {
  const std::string nowhere = folder.file("none/strip.svg");
  expect_refusal({"curves", preset, "-o", nowhere}, nowhere + ": No such file or directory");
}

TEST_F(Curves, LeaveTheOlderPictureWhenThereIsNoRoom) {
  const std::string picture = folder.write("strip.svg", "old");
  const ChildResult result = run({"curves", preset, "-y", "-o", picture}, 1000);
  EXPECT_EQ(result.output, "channelstrip: " + picture + ": File too large\n");
  EXPECT_EQ(contents(picture), "old");
}

}  // namespace
}  // namespace channelstrip::test::curves_test
