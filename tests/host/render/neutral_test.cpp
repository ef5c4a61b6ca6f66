// Without a preset a file is unchanged except for the library's 0 dB: each of the two gain terms
// gives the factor 1.0000013, together 1 + 2.63e-6.

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <vector>

#include "../support/audio.h"
#include "../support/rendered.h"
#include "../support/temporary_folder.h"

namespace channelstrip::test::neutral_test {
namespace {

constexpr double kUnity = 2.7e-6;  // bound of the relative error

TestAudio rendered(const TestAudio& input, host::RenderReport* report = nullptr) {
  const TemporaryFolder folder;
  const auto result = render(write_audio(folder.file("in.wav"), input), folder.file("out.wav"));
  if (report) *report = result;
  return read_audio(folder.file("out.wav"));
}

TestAudio integers(int sample_type, int bits, const std::vector<int>& steps) {
  TestAudio audio{.format = SF_FORMAT_WAV | sample_type};
  for (const int step : steps) audio.integers.push_back(step * (1 << (32 - bits)));
  return audio;
}

TEST(NeutralStrip, ReturnsEverySampleOf16BitsUnchanged) {
  std::vector<int> steps;
  for (int step = -32768; step <= 32767; ++step) steps.push_back(step);
  const TestAudio input = integers(SF_FORMAT_PCM_16, 16, steps);
  host::RenderReport report;
  EXPECT_EQ(rendered(input, &report).integers, input.integers);
  EXPECT_EQ(report.clipped, 0);
}

TEST(NeutralStrip, ReturnsEverySampleOf8BitsUnchanged) {
  std::vector<int> steps;
  for (int step = -128; step <= 127; ++step) steps.push_back(step);
  const TestAudio input = integers(SF_FORMAT_PCM_U8, 8, steps);
  EXPECT_EQ(rendered(input).integers, input.integers);
}

// 2.7e-6 of 185185 steps, which is -33 dBFS, is half a step: smaller samples round to themselves.
TEST(NeutralStrip, Returns24BitsBelowMinus33DbUnchanged) {
  std::vector<int> steps;
  for (int step = -185185; step <= 185185; ++step) steps.push_back(step);
  const TestAudio input = integers(SF_FORMAT_PCM_24, 24, steps);
  EXPECT_EQ(rendered(input).integers, input.integers);
}

TEST(NeutralStrip, Returns24BitsWithinItsUnityGain) {
  std::vector<int> steps;
  for (const float x : noise(100000, 1)) steps.push_back(static_cast<int>(x * 0x1p23f));
  const TestAudio input = integers(SF_FORMAT_PCM_24, 24, steps);
  const TestAudio output = rendered(input);
  ASSERT_EQ(output.integers.size(), steps.size());
  for (std::size_t i = 0; i < steps.size(); ++i) {
    const int step = output.integers[i] / 256;
    ASSERT_LE(std::abs(step - steps[i]), 0.5 + kUnity * std::abs(steps[i]));
  }
}

TEST(NeutralStrip, ReturnsFloatsWithinItsUnityGain) {
  const TestAudio input{.channels = 2, .floats = noise(2 * 30000, 4)};
  const TestAudio output = rendered(input);
  ASSERT_EQ(output.floats.size(), input.floats.size());
  for (std::size_t i = 0; i < input.floats.size(); ++i) {
    const auto x = static_cast<double>(input.floats[i]);
    ASSERT_LE(std::abs(static_cast<double>(output.floats[i]) - x), kUnity * std::abs(x));
  }
}

}  // namespace
}  // namespace channelstrip::test::neutral_test
