// --gain-in, --gain-out and --mix.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::gain_and_mix_test {
namespace {

class GainAndMix : public Program {
 protected:
  using Arguments = std::vector<std::string>;

  std::vector<int> rendered(const Arguments& arguments) const {
    Arguments all{"render", input, output, "-y"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    const ChildResult result = run(all);
    EXPECT_EQ(result.exit_status, 0) << result.output;
    return read_audio(output).integers;
  }
};

TEST_F(GainAndMix, AreWhatSetWouldMakeThem) {
  const Arguments compressor{"--set", "compressor.ratio=4"};
  const auto with = [&](Arguments arguments) {
    arguments.insert(arguments.end(), compressor.begin(), compressor.end());
    return rendered(arguments);
  };
  EXPECT_EQ(with({"--gain-in", "-3", "--gain-out", "2.5", "--mix", "40"}),
            with({"--set", "gain_in=-3", "--set", "gain_out=2.5", "--set", "mix=40"}));
  EXPECT_NE(with({"--gain-in", "-3"}), with({}));
  EXPECT_NE(with({"--gain-out", "-3"}), with({}));
  EXPECT_NE(with({"--mix", "10"}), with({}));
}

TEST_F(GainAndMix, OverrideThePresetAndEverySet) {
  const std::string preset = folder.write("p.toml", "gain_in = 12\ngain_out = 12\nmix = 20\n");
  EXPECT_EQ(rendered({"--preset", preset, "--gain-in", "-6", "--gain-out", "0", "--mix", "100",
                      "--set", "gain_in=9"}),
            rendered({"--gain-in", "-6"}));
}

TEST_F(GainAndMix, OfNothingLeaveEverySampleAsItIs) {
  for (const Arguments& neutral : {Arguments{"--gain-in", "0", "--gain-out", "0", "--mix", "100"},
                                   Arguments{"--mix", "0", "--set", "compressor.threshold=-40"}}) {
    EXPECT_EQ(rendered(neutral), read_audio(input).integers);
  }
}

TEST_F(GainAndMix, AreSummedUpAsPeaksBehindEach) {
  const ChildResult result = run({"render", input, output, "--gain-in", "-6", "--gain-out", "2"});
  EXPECT_NE(result.output.find("M               -12.0         -10.0         0.0"),
            std::string::npos)
      << result.output;
}

TEST_F(GainAndMix, OutOfRangeAreRefused) {
  expect_refusal({"render", input, output, "--gain-in", "60.1"},
                 "--gain-in: 60.1 isn't -60 to 60 dB");
  expect_refusal({"render", input, output, "--gain-out", "nan"},
                 "--gain-out: nan isn't -60 to 60 dB");
  expect_refusal({"render", input, output, "--gain-out", "loud"},
                 "--gain-out: loud isn't -60 to 60 dB");
  expect_refusal({"render", input, output, "--mix", "-1"}, "--mix: -1 isn't 0 to 100 %");
}

}  // namespace
}  // namespace channelstrip::test::gain_and_mix_test
