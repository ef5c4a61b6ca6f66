#include "audio.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <stdexcept>

#include "host/audio/sndfile_handle.h"

namespace channelstrip::test {
namespace {

host::Sndfile open_sndfile(const std::string& path, int mode, SF_INFO& info) {
  host::Sndfile file(sf_open(path.c_str(), mode, &info));
  if (!file) throw std::runtime_error(path + ": " + sf_strerror(nullptr));
  return file;
}

int bytes(const std::vector<int>& values) {
  return static_cast<int>(values.size() * sizeof(int));
}

}  // namespace

std::vector<float> noise(std::size_t samples, float amplitude, std::uint32_t seed) {
  std::mt19937 random(seed);
  std::vector<float> result(samples);
  // The top 24 bits: exact in single precision, and the same on every platform.
  std::ranges::generate(
      result, [&] { return amplitude * (static_cast<float>(random() >> 8) * 0x1p-23f - 1.0f); });
  return result;
}

std::vector<float> sine(double amplitude, double frequency, double sample_rate, std::size_t frames,
                        std::size_t channels) {
  std::vector<float> samples;
  for (std::size_t i = 0; i < frames; ++i) {
    const double phase = 2 * std::numbers::pi * frequency * static_cast<double>(i) / sample_rate;
    samples.insert(samples.end(), channels, static_cast<float>(amplitude * std::sin(phase)));
  }
  return samples;
}

std::vector<float> channels_of(std::span<const float> frames, std::size_t width,
                               std::span<const std::size_t> channels) {
  std::vector<float> some;
  for (std::size_t i = 0; i < frames.size(); i += width) {
    for (const std::size_t c : channels) some.push_back(frames[i + c]);
  }
  return some;
}

std::string write_audio(const std::string& path, const TestAudio& audio) {
  SF_INFO info = {};
  info.samplerate = audio.sample_rate;
  info.channels = audio.channels;
  info.format = audio.format;
  const host::Sndfile file = open_sndfile(path, SFM_WRITE, info);
  if (!audio.map.empty()) {
    std::vector<int> map = audio.map;
    if (!sf_command(file.get(), SFC_SET_CHANNEL_MAP_INFO, map.data(), bytes(map))) {
      throw std::runtime_error(path + ": no channel map");
    }
  }
  sf_write_int(file.get(), audio.integers.data(), static_cast<sf_count_t>(audio.integers.size()));
  sf_write_float(file.get(), audio.floats.data(), static_cast<sf_count_t>(audio.floats.size()));
  return path;
}

TestAudio read_audio(const std::string& path) {
  SF_INFO info = {};
  const host::Sndfile file = open_sndfile(path, SFM_READ, info);
  TestAudio audio{.format = info.format, .channels = info.channels, .sample_rate = info.samplerate};
  audio.map.resize(static_cast<std::size_t>(info.channels));
  if (!sf_command(file.get(), SFC_GET_CHANNEL_MAP_INFO, audio.map.data(), bytes(audio.map))) {
    audio.map.clear();
  }
  const sf_count_t samples = info.frames * info.channels;
  audio.floats.resize(static_cast<std::size_t>(samples));
  audio.integers.resize(static_cast<std::size_t>(samples));
  sf_read_float(file.get(), audio.floats.data(), samples);
  sf_seek(file.get(), 0, SEEK_SET);
  sf_read_int(file.get(), audio.integers.data(), samples);
  return audio;
}

}  // namespace channelstrip::test
