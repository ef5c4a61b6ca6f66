// Audio for tests: made up, written and read back.

#pragma once

#include <sndfile.h>

#include <cstdint>
#include <string>
#include <vector>

namespace channelstrip::test {

// Uniform noise in (-amplitude, amplitude), the same for the same seed.
std::vector<float> noise(std::size_t samples, float amplitude, std::uint32_t seed = 1);

struct TestAudio {
  int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  int channels = 1;
  int sample_rate = 48000;
  std::vector<int> map = {};       // empty: none
  std::vector<int> integers = {};  // interleaved samples in the top bits; or
  std::vector<float> floats = {};
};

// Throw when libsndfile fails.
std::string write_audio(const std::string& path, const TestAudio& audio);

// Both kinds of samples are filled.
TestAudio read_audio(const std::string& path);

}  // namespace channelstrip::test
