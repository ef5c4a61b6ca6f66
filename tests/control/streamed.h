// Plays a stream through a strip, and makes streams that keep every stage busy.

#pragma once

#include <algorithm>
#include <bit>
#include <cstdint>
#include <functional>
#include <span>
#include <utility>
#include <vector>

#include "control/design/dynamics.h"
#include "control/library/library.h"
#include "control/strip/strip_stream.h"
#include "tests/host/support/audio.h"

namespace channelstrip::test {

struct Streamed {
  std::vector<std::uint32_t> bits;
  std::vector<float> samples;
  host::StripMeters meters;
};

struct Stream {
  const char* format;
  std::span<const float> input;
  host::StripSettings settings = {};
  std::vector<float> key = {};  // none: no key
  std::vector<std::pair<std::uint64_t, host::StripSettings>> changes = {};
  std::function<void(const host::MeterReading&)> observer = {};
};

constexpr double kStreamRate = 48000;  // Hz

inline host::StripSettings keyed(const Stream& stream, host::StripSettings settings) {
  settings.key_enable = !stream.key.empty();
  return settings;
}

// `frames_per_call` 0: all at once.
inline Streamed play(const Stream& stream, std::size_t frames_per_call = 0) {
  static const host::Library library(CHANNELSTRIP_LIBRARY);
  const host::StemFormat& format = *host::find_stem_format(stream.format);
  std::vector<host::StripStream::Change> changes;
  for (const auto& [frame, settings] : stream.changes) {
    changes.push_back({frame, keyed(stream, settings)});
  }
  host::StripStream strip(library, host::default_layout(format), kStreamRate,
                          keyed(stream, stream.settings), std::move(changes));
  if (stream.observer) strip.observe(stream.observer);

  const auto channels = static_cast<std::size_t>(format.channels);
  const std::size_t frames = stream.input.size() / channels;
  const std::size_t step = frames_per_call ? frames_per_call : std::max<std::size_t>(frames, 1);
  const auto piece = [step](std::span<const float> samples, std::size_t begin, std::size_t width) {
    const std::size_t from = std::min(samples.size(), begin * width);
    return samples.subspan(from, std::min(samples.size() - from, step * width));
  };
  Streamed result;
  for (std::size_t i = 0; i < frames; i += step) {
    strip.process(piece(stream.input, i, channels), piece(stream.key, i, 1), result.samples);
  }
  strip.finish(result.samples);
  for (const float x : result.samples) result.bits.push_back(std::bit_cast<std::uint32_t>(x));
  result.meters = strip.meters();
  return result;
}

inline host::StripSettings busy_settings() {
  host::StripSettings settings;
  settings.pre = {{.type = host::BandType::kHighPass, .frequency = 60},
                  {.frequency = 3000, .gain = 6}};
  settings.post = {{.type = host::BandType::kHighShelf, .frequency = 9000, .gain = -4}};
  settings.compressor = {.threshold = -18, .ratio = 4, .attack = 1, .release = 30};
  settings.expander = {.threshold = -30, .release = 5, .hold = 1, .hysteresis = 6};
  settings.detector.time = 2;
  return settings;
}

// Alternately loud and quiet noise, so that every part of the dynamics moves.
inline std::vector<float> bursts(std::size_t frames, std::size_t channels) {
  std::vector<float> samples = noise(frames * channels, 0.9f);
  for (std::size_t i = 0; i < samples.size(); ++i) {
    if (i / channels / 700 % 2) samples[i] *= 0.01f;
  }
  return samples;
}

// A sine that peaks at `db` dBFS: at 1 kHz a sample falls on each crest.
inline std::vector<float> tone(double db, std::size_t frames, double frequency = 1000) {
  return sine(host::db_to_linear(db), frequency, kStreamRate, frames);
}

}  // namespace channelstrip::test
