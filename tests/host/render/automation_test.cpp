// Settings that change within a file.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <string>
#include <vector>

#include "program.h"

namespace channelstrip::test::automation_test {
namespace {

constexpr int kRate = 48000;
constexpr std::ptrdiff_t kPeriod = 64;  // frames

class Automated : public Program {
 protected:
  std::vector<float> rendered(const std::string& file, const std::string& preset) const {
    const ChildResult result =
        run({"render", file, output, "-y", "--preset", folder.write("preset.toml", preset)});
    EXPECT_EQ(result.exit_status, 0) << result.output;
    return read_audio(output).floats;
  }

  std::string write(int channels, const std::vector<float>& samples) const {
    return write_audio(folder.file("steady.wav"), {.channels = channels, .floats = samples});
  }
};

const std::string kUnchanged = "[compressor]\nratio = 1\n[[eq]]\nfrequency = 440\n";

TEST_F(Automated, OutputDiffersFromThePeriodOfTheChangeOn) {
  const std::string file = write(2, noise(2 * kRate, 0.25f));
  const std::vector<float> before = rendered(file, kUnchanged);
  for (const char* change : {"compressor.makeup = 6", "eq.1.gain = -12", "bypass = true",
                             "gain_in = 6", "gain_out = -6"}) {
    for (const double time : {0.1, 0.33337, 0.9999}) {
      const std::vector<float> after =
          rendered(file, kUnchanged + "[[at]]\ntime = " + std::to_string(time) + "\n" + change);
      ASSERT_EQ(after.size(), before.size());
      const auto same = std::ranges::mismatch(before, after).in1 - before.begin();
      EXPECT_EQ(same / 2 / kPeriod, std::lround(time * kRate) / kPeriod) << change << " " << time;
    }
  }
}

TEST_F(Automated, OutputStartsWhereChangesOfItsFirstPeriodLead) {
  const std::string file = write(1, noise(5000, 0.25f));
  const std::vector<float> started = rendered(file, kUnchanged + "gain = 6\n");
  for (const char* time : {"0", "0.001"}) {
    EXPECT_EQ(rendered(file, kUnchanged + "[[at]]\neq.1.gain = 6\ntime = " + time), started);
  }
}

TEST_F(Automated, ChangesBehindTheEndAreRemarked) {
  const std::string preset = folder.write("long.toml", kUnchanged +
                                                           "[[at]]\ntime = 0.05\neq.1.gain = 1\n"
                                                           "[[at]]\ntime = 7.5\neq.1.gain = 2\n"
                                                           "[[at]]\ntime = 9\neq.1.gain = 3\n");
  EXPECT_NE(run({"render", input, output, "--preset", preset})
                .output.find("warning: 2 changes of settings, from 7.500 s on, come after the end"),
            std::string::npos);
}

TEST_F(Automated, OutputKnowsNothingOfChangesBehindItsEnd) {
  const std::string file = write(1, noise(kRate, 0.25f));
  const std::vector<float> unchanged = rendered(file, kUnchanged);
  for (const char* time : {"1", "3600", "1e300"}) {
    EXPECT_EQ(rendered(file, kUnchanged + "[[at]]\neq.1.gain = 6\ntime = " + time), unchanged);
  }
}

// Each channel has a sine of its own frequency.
std::vector<float> sines(std::size_t channels) {
  std::vector<float> samples(channels * kRate);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    const double frequency = 220 + 110 * static_cast<double>(i % channels);
    const double seconds = static_cast<double>(i / channels) / kRate;
    samples[i] = 0.1f * static_cast<float>(std::sin(2 * std::numbers::pi * frequency * seconds));
  }
  return samples;
}

std::vector<double> greatest_steps(const std::vector<float>& samples, std::size_t channels) {
  std::vector<double> steps(channels);
  for (std::size_t i = channels; i < samples.size(); ++i) {
    double& step = steps[i % channels];
    step = std::max(step, std::abs(static_cast<double>(samples[i] - samples[i - channels])));
  }
  return steps;
}

// Both samples of a step are rounded to single precision, by up to 2^-25 of at most 1 each.
constexpr double kRounding = 0x1p-24;

TEST_F(Automated, GainOfASineChangesWithoutAClick) {
  for (const std::size_t channels : {1u, 6u}) {
    const std::string file = write(static_cast<int>(channels), sines(channels));
    for (const std::string key : {"compressor.makeup", "eq.1.gain", "gain_in", "gain_out"}) {
      const auto steady = [&](const char* gain) {
        const std::string start = "[[at]]\ntime = 0\n" + key + " = " + gain + "\n";
        return greatest_steps(rendered(file, kUnchanged + start), channels);
      };
      const std::vector<double> neutral = steady("0"), louder = steady("15");
      const std::vector<double> changing =
          greatest_steps(rendered(file, kUnchanged + "[[at]]\ntime = 0.25\n" + key +
                                            " = 15\n[[at]]\ntime = 0.5003\n" + key +
                                            " = 0\n[[at]]\ntime = 0.7507\n" + key + " = 12\n"),
                         channels);
      for (std::size_t c = 0; c < channels; ++c) {
        SCOPED_TRACE(key + " in channel " + std::to_string(c + 1));
        EXPECT_GT(louder[c], 1.05 * neutral[c]);
        EXPECT_GT(changing[c], 1.05 * neutral[c]);
        EXPECT_LE(changing[c], louder[c] + kRounding);
      }
    }
  }
}

}  // namespace
}  // namespace channelstrip::test::automation_test
