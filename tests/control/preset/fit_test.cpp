// Presets that are valid, but not for the sample rate or channels of the audio.

#include <gtest/gtest.h>

#include <string>

#include "refusal.h"

namespace channelstrip::test::fit_test {
namespace {

using namespace host;

std::string misfit(const Preset& preset, double sample_rate, std::string_view format = "Stereo") {
  const ChannelLayout layout = default_layout(*find_stem_format(format));
  return refusal([&] { check_fits(preset, sample_rate, layout); });
}

TEST(PresetFit, BandAboveHalfTheSampleRateIsRefused) {
  const Preset preset = parse_preset("[[eq]]\n[[eq]]\nfrequency = 22050\n[key_filter]\n", "p.toml");
  EXPECT_EQ(misfit(preset, 48000), "");
  EXPECT_EQ(misfit(preset, 44100),
            "p.toml:3:1: eq.2: frequency 22050 Hz is not below half the sample rate 44100 Hz");
  // The default of 1000 Hz has no line of its own, so the table's is named.
  const Preset unset = parse_preset("\n[key_filter]\nq = 1\n", "p.toml");
  EXPECT_EQ(misfit(unset, 2000),
            "p.toml:2:2: key_filter: frequency 1000 Hz is not below half the sample rate 2000 Hz");
}

TEST(PresetFit, BandTooLowForSinglePrecisionIsRefused) {
  const Preset preset = parse_preset("[[eq]]\nfrequency = 3\n", "p.toml");
  EXPECT_EQ(misfit(preset, 48000), "");
  const std::string given = misfit(preset, 192000);
  EXPECT_TRUE(
      given.starts_with("p.toml:2:1: eq.1: frequency 3 Hz, q 0.7071 and gain 0 dB leave no "
                        "stable filter in single precision at 192000 Hz"))
      << given;
}

TEST(PresetFit, BandOfAChangeIsRefusedWhereItIsChanged) {
  const Preset preset =
      parse_preset("[[eq]]\n[[at]]\ntime = 1\neq.1.frequency = 23000\n", "p.toml");
  EXPECT_EQ(misfit(preset, 48000), "");
  EXPECT_EQ(misfit(preset, 44100),
            "p.toml:4:6: eq.1: frequency 23000 Hz is not below half the sample rate 44100 Hz");
}

TEST(PresetFit, AssignedBandIsRefusedWithItsAssignment) {
  const Preset preset = load_preset(std::nullopt, {"eq.1.frequency=23000"});
  EXPECT_EQ(misfit(preset, 44100),
            "--set eq.1.frequency=23000: frequency 23000 Hz is not below half the sample rate "
            "44100 Hz");
}

TEST(PresetFit, LinkMapOfOtherChannelsIsRefused) {
  const Preset preset = parse_preset("[link]\n\"7.1\" = \"L R C LFE Lb Rb Ls Rs\"\n", "p.toml");
  EXPECT_EQ(misfit(preset, 48000, "7.1"), "");
  ChannelLayout layout = default_layout(*find_stem_format("7.1"));
  layout.labels[4] = "Lc";
  layout.labels[5] = "Rc";
  EXPECT_EQ(refusal([&] { check_fits(preset, 48000, layout); }),
            "p.toml:2:9: link.7.1: the map names Lb, the channels are L R C LFE Lc Rc Ls Rs");
}

}  // namespace
}  // namespace channelstrip::test::fit_test
