// Bands that a sample rate has no room for.

#include "control/preset/left_out.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "refusal.h"

namespace channelstrip::test::left_out_test {
namespace {

using namespace host;
using Lines = std::vector<std::string>;

constexpr const char* kPreset =
    "[[eq]]\nfrequency = 100\ngain = 3\n"
    "[[eq]]\ntype = \"high_shelf\"\nfrequency = 4000\ngain = 3\n"
    "[key_filter]\nfrequency = 5000\ngain = 3\n"
    "[[at]]\ntime = 1\neq.1.frequency = 6000\n";

TEST(LeftOut, IsNothingBelowHalfTheRate) {
  Preset preset = parse_preset(kPreset, "p.toml");
  leave_out_bands_above(preset, 48000);
  EXPECT_EQ(preset.remarks, Lines{});
  EXPECT_EQ(preset.settings.pre[1].gain, 3);
}

TEST(LeftOut, IsEveryBandThatIsNotBelowHalfTheRateEachOnce) {
  Preset preset = parse_preset(kPreset, "p.toml");
  const std::string why = " Hz, is not below half the sample rate 8000 Hz";
  leave_out_bands_above(preset, 8000);
  EXPECT_EQ(preset.remarks, (Lines{"p.toml:6:1: eq.2: left out, as its frequency, 4000" + why,
                                   "p.toml:9:1: key_filter: left out, as its frequency, 5000" + why,
                                   "p.toml:13:6: eq.1: left out, as its frequency, 6000" + why}));
  EXPECT_EQ(preset.settings.pre[0].gain, 3);
  EXPECT_EQ(preset.settings.pre[1].gain, 0);
  EXPECT_EQ(preset.settings.key_filter->gain, 0);
  EXPECT_EQ(preset.changes[0].settings.pre[0].gain, 0);
  const ChannelLayout layout = default_layout(*find_stem_format("Stereo"));
  EXPECT_EQ(refusal([&] { check_fits(preset, 8000, layout); }), "");
}

}  // namespace
}  // namespace channelstrip::test::left_out_test
