// Invalid presets and their messages: file, line, column, key and what is wrong.

#include "refusal.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/host/support/temporary_folder.h"

namespace channelstrip::test::refusal_test {
namespace {

using namespace host;

struct Case {
  const char* preset;
  const char* message;
};

template <std::size_t kCount>
void expect_refusals(const Case (&cases)[kCount]) {
  for (const auto& [preset, message] : cases) {
    EXPECT_EQ(refusal_of(preset), std::string("p.toml:") + message);
  }
}

TEST(PresetRefusal, UnknownKeyComesWithTheNearest) {
  expect_refusals({
      {"[compressor]\nratio = 2\n  treshold = -20\n",
       "3:3: compressor.treshold: unknown key; did you mean \"threshold\"?"},
      {"[compressor]\nRatio = 2\n", "2:1: compressor.Ratio: unknown key; did you mean \"ratio\"?"},
      {"[expander]\nhyst = 2\n", "2:1: expander.hyst: unknown key; did you mean \"hysteresis\"?"},
      {"[[eq]]\n[[eq]]\nfreqency = 1\n",
       "3:1: eq.2.freqency: unknown key; did you mean \"frequency\"?"},
      {"\n[compresor]\n", "2:2: compresor: unknown key; did you mean \"compressor\"?"},
      {"[link]\nstlye = \"film\"\n", "2:1: link.stlye: unknown key; did you mean \"style\"?"},
      {"[link]\n\"9.1\" = \"L R\"\n",
       "2:1: link.9.1: unknown key; did you mean \"5.1\", \"6.1\" or \"7.1\"?"},
      {"[[at]]\ntime = 1\ndetector.tim = 2\n",
       "3:10: at.detector.tim: unknown key; did you mean \"time\"?"},
  });
}

TEST(PresetRefusal, UnknownKeyUnlikeAnyComesWithAll) {
  expect_refusals({
      {"loudness = 3\n",
       "1:1: loudness: unknown key; a preset takes name, gain_in, gain_out, mix, bypass, glide, "
       "eq, "
       "key_filter, compressor, expander, detector, key, meter, link, at"},
      {"[[at]]\ntime = 1\n[at.reverb]\n",
       "3:5: at.reverb: unknown key; a change takes time, gain_in, gain_out, mix, bypass, glide, "
       "eq, "
       "key_filter, compressor, expander, detector, key, meter, link"},
      {"[detector]\nwindow = 3\n",
       "2:1: detector.window: unknown key; [detector] takes mode, time"},
      {"[[eq]]\nwidth = 1\n",
       "2:1: eq.1.width: unknown key; [[eq]] takes on, type, frequency, gain, q, shelf_slope, "
       "slope, "
       "design, position"},
      {"[key_filter]\nposition = \"pre\"\n",
       "2:1: key_filter.position: unknown key; [key_filter] takes on, type, frequency, gain, q, "
       "shelf_slope, slope, design"},
      {"[link]\nambisonic = \"W X Y Z\"\n",
       "2:1: link.ambisonic: unknown key; [link] takes style, Mono, Stereo, LCR, Quad, LCRS, 5.0, "
       "5.1, 6.0, 6.1, 7.0, 7.1"},
  });
}

TEST(PresetRefusal, UnknownWordComesWithTheNearestOrAll) {
  expect_refusals({
      {"[[eq]]\ntype = \"lowshelf\"\n",
       "2:8: eq.1.type: unknown value \"lowshelf\"; did you mean \"low_shelf\"?"},
      {"[[eq]]\ntype = \"bell\"\n",
       "2:8: eq.1.type: unknown value \"bell\"; must be \"peak\", \"low_shelf\", \"high_shelf\", "
       "\"low_pass\", \"high_pass\", \"band_pass\", \"notch\", \"all_pass\" or \"tilt\""},
      {"[detector]\nmode = 1\n", "2:8: detector.mode: must be \"peak\", \"smooth\" or \"average\""},
      {"[[eq]]\nposition = \"middle\"\n",
       "2:12: eq.1.position: unknown value \"middle\"; must be \"pre\" or \"post\""},
      {"[link]\nstyle = \"pair\"\n",
       "2:9: link.style: unknown value \"pair\"; did you mean \"pairs\"?"},
  });
}

TEST(PresetRefusal, ValueOfAnotherTypeIsRefused) {
  expect_refusals({
      {"compressor = 3\n", "1:14: compressor: must be a table, [compressor]"},
      {"key_filter = 3\n", "1:14: key_filter: must be a table, [key_filter]"},
      {"[eq]\n", "1:1: eq: must be an array of tables, [[eq]]"},
      {"eq = [1]\n", "1:7: eq.1: must be an array of tables, [[eq]]"},
      {"[at]\n", "1:1: at: must be an array of tables, [[at]]"},
      {"at = [1]\n", "1:7: at: must be an array of tables, [[at]]"},
      {"name = 1\n", "1:8: name: must be text in quotes"},
      {"glide = \"20\"\n", "1:9: glide: must be a number"},
      {"[expander]\nhold = true\n", "2:8: expander.hold: must be a number"},
      {"[compressor]\nauto_makeup = 1\n", "2:15: compressor.auto_makeup: must be true or false"},
      {"[link]\n\"5.1\" = 3\n", "2:9: link.5.1: must be text in quotes"},
  });
}

TEST(PresetRefusal, ValueOutsideItsRangeIsRefused) {
  expect_refusals({
      {"[compressor]\nratio = 0.5\n",
       "2:9: compressor.ratio: must be 1 or more: a compressor never makes louder what is above "
       "its threshold"},
      {"[compressor]\nratio = nan\n",
       "2:9: compressor.ratio: must be 1 or more: a compressor never makes louder what is above "
       "its threshold"},
      {"[compressor]\nattack = inf\n", "2:10: compressor.attack: must be 0 to 10000 ms"},
      {"[compressor]\nknee = 0.05\n", "2:8: compressor.knee: must be 0 or 0.1 to 60 dB"},
      {"[expander]\nratio = inf\n", "2:9: expander.ratio: must be 1 to 100"},
      {"[expander]\nrange = 3\n", "2:9: expander.range: must be -120 to 0 dB"},
      {"[[eq]]\nfrequency = 0\n", "2:13: eq.1.frequency: must be 1 to 192000 Hz"},
      {"[[eq]]\ntype = \"low_pass\"\nslope = 20\n", "3:9: eq.1.slope: must be 6, 12 ... 96 dB/oct"},
      {"[[eq]]\ntype = \"low_pass\"\nslope = 102\n",
       "3:9: eq.1.slope: must be 6, 12 ... 96 dB/oct"},
  });
}

TEST(PresetRefusal, KeyThatMeansNothingToItsBandIsRefusedWithTheReason) {
  expect_refusals({
      {"[[eq]]\ntype = \"low_pass\"\ngain = 0\n", "3:1: eq.1.gain: a low_pass has no gain"},
      {"[key_filter]\ngain = 3\ntype = \"all_pass\"\n",
       "2:1: key_filter.gain: an all_pass has no gain"},
      {"[[eq]]\nslope = 24\n", "2:1: eq.1.slope: a peak has no slope"},
      {"[[eq]]\nshelf_slope = 1\n", "2:1: eq.1.shelf_slope: a peak has no shelf_slope"},
      {"[[eq]]\ntype = \"tilt\"\nq = 1\n", "3:1: eq.1.q: a tilt has no q"},
      {"[[eq]]\ntype = \"high_pass\"\nslope = 24\nq = 1\n",
       "4:1: eq.1.q: a high_pass of 24 dB/oct is a Butterworth filter, which has no q"},
      {"[[eq]]\ntype = \"low_shelf\"\nq = 1\nshelf_slope = 1\n",
       "3:1: eq.1.q: the band has a shelf_slope, which takes q's place"},
      {"[key_filter]\ntype = \"low_pass\"\nslope = 18\n",
       "3:1: key_filter.slope: the key filter is one section: 6 or 12 dB/oct"},
  });
}

TEST(PresetRefusal, PassOf12DecibelsMayHaveAQ) {
  EXPECT_EQ(refusal_of("[[eq]]\ntype = \"high_pass\"\nslope = 12\nq = 2\n"), "");
}

TEST(PresetRefusal, MoreSectionsThanAStripHasAreRefusedWhereTheyBegin) {
  expect_refusals({
      {"[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n[[eq]]\n",
       "9:1: eq.9: the bands take 9 second-order sections, a strip has 8"},
      {"[[eq]]\ntype = \"high_pass\"\nslope = 48\n[[eq]]\ntype = \"low_pass\"\nslope = "
       "54\n[[eq]]\n",
       "6:1: eq.2.slope: the bands take 10 second-order sections, a strip has 8"},
  });
  EXPECT_EQ(refusal_of("[[eq]]\ntype = \"low_pass\"\nslope = 90\n"), "");
  EXPECT_EQ(refusal_of("[[eq]]\ntype = \"low_pass\"\nslope = 84\n[[eq]]\n"), "");
}

TEST(PresetRefusal, LinkMapThatDoesNotFitItsFormatIsRefused) {
  expect_refusals({
      {"[link]\n\n\"5.1\" = \"L R C\"\n", "3:9: link.5.1: the map lacks LFE"},
      {"[link]\nlcr = \"L R | X\"\n", "2:7: link.lcr: the map names X, the channels are L R C"},
      {"[link]\nlcr = \"L R C\"\nLCR = \"L R C\"\n",
       "3:1: link.LCR: this format has a link map already"},
  });
}

TEST(PresetRefusal, FirstOfSeveralErrorsIsTold) {
  EXPECT_EQ(refusal_of("zoom = 1\nalpha = 1\n").substr(0, 17), "p.toml:1:1: zoom:");
}

TEST(PresetRefusal, SyntaxErrorsAreOneLineWithLineAndColumn) {
  expect_refusals({
      {"[compressor]\nratio = \n",
       "2:9: syntax error: Error while parsing key-value pair: expected value, saw '\\n'"},
      {"[compressor]\nratio = 2\nratio = 3\n",
       "3:9: syntax error: Error while parsing key-value pair: cannot redefine existing integer "
       "'ratio'"},
      {"name = \"open\n",
       "1:13: syntax error: Error while parsing string: unescaped control characters other than "
       "TAB (U+0009) are explicitly prohibited"},
  });
  const std::string given = refusal_of("\xFF\n");
  EXPECT_TRUE(given.starts_with("p.toml:1:1: syntax error: ")) << given;
  EXPECT_EQ(given.find('\n'), std::string::npos) << given;
}

TEST(PresetRefusal, FileThatIsNotThereIsNamed) {
  const TemporaryFolder folder;
  const std::string missing = folder.file("none.toml");
  EXPECT_EQ(refusal([&] { read_preset(missing); }), missing + ": No such file or directory");
  const std::string here = folder.file(".");
  EXPECT_EQ(refusal([&] { read_preset(here); }), here + ": Is a directory");
}

}  // namespace
}  // namespace channelstrip::test::refusal_test
