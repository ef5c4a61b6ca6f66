// Remarks on bands that single precision doesn't hold well.

#include "control/preset/precision.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <string>
#include <vector>

namespace channelstrip::test::precision_test {
namespace {

using namespace host;
using Lines = std::vector<std::string>;

constexpr const char* kPreset =
    "[[eq]]\ntype = \"high_pass\"\nfrequency = 80\n"
    "[[eq]]\ntype = \"notch\"\nfrequency = 50\nq = 30\n"
    "[key_filter]\ntype = \"high_pass\"\nfrequency = 40\n"
    "[[at]]\ntime = 1\neq.1.frequency = 20\n";

Lines remarks(double sample_rate) {
  Preset preset = parse_preset(kPreset, "p.toml");
  remark_on_precision(preset, sample_rate);
  return preset.remarks;
}

TEST(Precision, IsRemarkedOnForEachBandOnce) {
  const std::string end = " in single precision at 192000 Hz; a lower sample rate suits it better";
  EXPECT_EQ(
      remarks(192000),
      (Lines{
          "p.toml:6:1: eq.2: is off by 0.4 dB at 49.04 Hz and adds noise of about -69 dBFS" + end,
          "p.toml:13:6: eq.1: adds noise of about -73 dBFS" + end}));
}

TEST(Precision, IsNotRemarkedOnWhereItSuffices) {
  Preset preset = parse_preset("[[eq]]\ntype = \"high_pass\"\nfrequency = 80\n", "p.toml");
  remark_on_precision(preset, 48000);
  EXPECT_EQ(preset.remarks, Lines{});
}

TEST(Precision, NoiseOfAKeyFilterIsNotHeard) {
  Preset preset = parse_preset("[key_filter]\ntype = \"high_pass\"\nfrequency = 40\n", "p.toml");
  EXPECT_GT(judge_bands(preset, 192000).front().accuracy.noise, kRemarkableNoise);
  remark_on_precision(preset, 192000);
  EXPECT_EQ(preset.remarks, Lines{});
}

TEST(Precision, RefusesABandThatCannotBe) {
  const Preset preset = parse_preset("[[eq]]\nfrequency = 30000\n", "p.toml");
  EXPECT_THROW(judge_bands(preset, 48000), std::runtime_error);
}

}  // namespace
}  // namespace channelstrip::test::precision_test
