#include "host/audio/dither.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <vector>

#include "../support/audio.h"
#include "../support/rendered.h"
#include "../support/temporary_folder.h"
#include "host/audio/pcm.h"

namespace channelstrip::test::dither_test {
namespace {

using host::Dither;

constexpr std::size_t kSamples = 1 << 20;
constexpr int kBits = 16;

// The errors of to_pcm(), in steps of the sample type.
std::vector<double> errors(const std::vector<float>& samples) {
  std::vector<std::int32_t> integers(samples.size());
  host::to_pcm(samples, kBits, Dither::kTriangular, 0, integers);
  std::vector<double> result;
  for (std::size_t i = 0; i < samples.size(); ++i) {
    result.push_back(integers[i] * 0x1p-16 - static_cast<double>(samples[i]) * 0x1p15);
  }
  return result;
}

double mean(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) sum += value;
  return sum / static_cast<double>(values.size());
}

double variance(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) sum += value * value;
  return sum / static_cast<double>(values.size()) - mean(values) * mean(values);
}

// The total error of non-subtractive triangular dither has mean 0 and variance 3/12 for any signal.
// Over 2^20 samples the standard deviation of the mean is 0.5 / 2^10 = 0.0005; the error lies
// within 1.5, so that of its square is less than 2.25 / 2^10 = 0.0022. The bounds are 5 sigma or
// more.
constexpr double kMeanBound = 0.0025;
constexpr double kVarianceBound = 0.011;

TEST(Dither, GivesAnErrorOfMeanAndVarianceIndependentOfTheSignal) {
  for (const double level : {0.125, 0.25, 0.5, 0.75, 1.0, 100.3, -0.4, -0.5, -7.9}) {
    const auto sample = static_cast<float>(level * 0x1p-15);
    const std::vector<double> e = errors(std::vector<float>(kSamples, sample));
    EXPECT_NEAR(mean(e), 0, kMeanBound) << level;
    EXPECT_NEAR(variance(e), 3.0 / 12, kVarianceBound) << level;
  }
}

TEST(Dither, GivesAnErrorUncorrelatedWithASignalOfLessThanAStep) {
  std::vector<float> samples(kSamples);
  for (std::size_t i = 0; i < kSamples; ++i) {
    samples[i] = static_cast<float>(0.4 * std::sin(0.01 * static_cast<double>(i) + 0.3)) * 0x1p-15f;
  }
  const std::vector<double> e = errors(samples);
  double sum = 0;
  for (std::size_t i = 0; i < kSamples; ++i) sum += e[i] * static_cast<double>(samples[i]) * 0x1p15;
  EXPECT_NEAR(sum / kSamples, 0, 0.4 * kMeanBound);
  // Without dither every sample would round to 0.
  EXPECT_NEAR(variance(e), 3.0 / 12, kVarianceBound);
}

TEST(Dither, IsWhiteFromSampleToSampleAndChannelToChannel) {
  const std::vector<double> e = errors(std::vector<float>(kSamples, 0x1p-16f));
  for (std::size_t lag = 1; lag <= 16; ++lag) {
    double sum = 0;
    for (std::size_t i = lag; i < kSamples; ++i) sum += e[i] * e[i - lag];
    EXPECT_NEAR(sum / kSamples, 0, kMeanBound) << lag;
  }
}

TEST(Dither, NeverMovesASampleByMoreThanOneAndAHalfSteps) {
  for (const double e : errors(noise(kSamples, 0.9f))) ASSERT_LE(std::abs(e), 1.5);
}

TEST(Dither, LeavesSilenceSilent) {
  for (const double e : errors(std::vector<float>(1000))) ASSERT_EQ(e, 0);
}

TEST(Dither, DoesNotDependOnHowAStreamIsCut) {
  const std::vector<float> samples = noise(5000, 0.5f);
  std::vector<std::int32_t> whole(samples.size()), cut(samples.size());
  host::to_pcm(samples, kBits, Dither::kTriangular, 0, whole);
  const std::span all(samples), head = all.first(1234), tail = all.subspan(1234);
  host::to_pcm(head, kBits, Dither::kTriangular, 0, std::span(cut).first(1234));
  host::to_pcm(tail, kBits, Dither::kTriangular, 1234, std::span(cut).subspan(1234));
  EXPECT_EQ(cut, whole);
}

TEST(Dither, DoesNotCountAsClipping) {
  const std::vector<float> samples(1000, 1.0f);
  std::vector<std::int32_t> integers(samples.size());
  EXPECT_EQ(host::to_pcm(samples, kBits, Dither::kTriangular, 0, integers), 0);
  for (const std::int32_t x : integers) ASSERT_GE(x >> 16, 32766);
}

TEST(Dither, IsUsualBelow24Bits) {
  const auto usual = [](int type) {
    host::AudioFormat format;
    format.sample_type = type;
    return host::usual_dither(format);
  };
  EXPECT_EQ(usual(SF_FORMAT_PCM_U8), Dither::kTriangular);
  EXPECT_EQ(usual(SF_FORMAT_PCM_16), Dither::kTriangular);
  for (const int type : {SF_FORMAT_PCM_24, SF_FORMAT_PCM_32, SF_FORMAT_FLOAT, SF_FORMAT_VORBIS}) {
    EXPECT_EQ(usual(type), Dither::kNone);
  }
}

TEST(Dither, GivesTheSameFileEveryTime) {
  const TemporaryFolder folder;
  const std::string input =
      write_audio(folder.file("in.wav"), {.channels = 2, .floats = noise(20000, 0.5f)});
  for (const char* name : {"a.wav", "b.wav"}) {
    copy_audio(input, folder.file(name), {.sample_type = SF_FORMAT_PCM_16}, Dither::kTriangular);
  }
  copy_audio(input, folder.file("plain.wav"), {.sample_type = SF_FORMAT_PCM_16});
  EXPECT_EQ(contents(folder.file("a.wav")), contents(folder.file("b.wav")));
  EXPECT_NE(contents(folder.file("a.wav")), contents(folder.file("plain.wav")));
}

}  // namespace
}  // namespace channelstrip::test::dither_test
