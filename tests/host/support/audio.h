// Audio for tests: generated, taken apart, written to files and read back.

#pragma once

#include <sndfile.h>

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace channelstrip::test {

// Uniform noise in (-amplitude, amplitude), the same for the same seed.
std::vector<float> noise(std::size_t samples, float amplitude, std::uint32_t seed = 1);

// The same sine in each of `channels` interleaved channels; frequencies in Hz.
std::vector<float> sine(double amplitude, double frequency, double sample_rate, std::size_t frames,
                        std::size_t channels = 1);

// The named ones of the `width` interleaved channels of `frames`, interleaved again.
std::vector<float> channels_of(std::span<const float> frames, std::size_t width,
                               std::span<const std::size_t> channels);

inline std::vector<float> channel(std::span<const float> frames, std::size_t width, std::size_t c) {
  return channels_of(frames, width, {&c, 1});
}

struct TestAudio {
  int format = SF_FORMAT_WAV | SF_FORMAT_FLOAT;
  int channels = 1;
  int sample_rate = 48000;
  std::vector<int> map = {};       // speakers; empty: none
  std::vector<int> integers = {};  // interleaved samples, left-justified; or
  std::vector<float> floats = {};
};

// Returns the path. Throws when libsndfile fails.
std::string write_audio(const std::string& path, const TestAudio& audio);

// Fills both kinds of samples. Throws when libsndfile fails.
TestAudio read_audio(const std::string& path);

}  // namespace channelstrip::test
