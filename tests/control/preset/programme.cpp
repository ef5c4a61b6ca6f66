#include "programme.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "control/design/dynamics.h"
#include "tests/host/support/audio.h"

namespace channelstrip::test::programme {
namespace {

using host::db_to_linear;

double time_of(std::size_t frame) {
  return static_cast<double>(frame) / kRate;
}

double peak_of(const Samples& audio) {
  double peak = 0;
  for (const float x : audio) peak = std::max(peak, static_cast<double>(std::abs(x)));
  return peak;
}

double rms_of(const Samples& audio) {
  double sum = 0;
  for (const float x : audio) sum += static_cast<double>(x) * static_cast<double>(x);
  return std::sqrt(sum / static_cast<double>(audio.size()));
}

Samples scaled(Samples audio, double factor) {
  for (float& x : audio) x = static_cast<float>(static_cast<double>(x) * factor);
  return audio;
}

// Rises within `attack` seconds and falls by 60 dB in `decay` seconds.
double envelope(double time, double attack, double decay) {
  return std::min(time / attack, 1.0) * db_to_linear(-60 * time / decay);
}

Samples shaped(Samples audio, double attack, double decay) {
  for (std::size_t i = 0; i < audio.size(); ++i) {
    audio[i] *= static_cast<float>(envelope(time_of(i), attack, decay));
  }
  return audio;
}

// A sawtooth's partials up to 4 kHz with their phases scattered, as the resonances of a throat or
// of a string's body scatter them.
Samples partials(double seconds, double frequency) {
  Samples result(frames(seconds));
  for (int k = 1; k * frequency < 4000; ++k) {
    // sin((i + 1) w + p) = 2 cos(w) sin(i w + p) - sin((i - 1) w + p)
    const double w = 2 * std::numbers::pi * k * frequency / kRate, p = 0.6 * k * k;
    double before = std::sin(p - w), now = std::sin(p);
    for (float& x : result) {
      x += static_cast<float>(now / k);
      before = std::exchange(now, 2 * std::cos(w) * now - before);
    }
  }
  return result;
}

Samples kick() {
  return with_peak(shaped(sine(1, 55, kRate, frames(0.4)), 0.002, 0.5), 0);
}

Samples snare() {
  return with_peak(shaped(coloured_noise(0.3, 200, 5000), 0.001, 0.3), 0);
}

}  // namespace

std::size_t frames(double seconds) {
  return static_cast<std::size_t>(std::lround(seconds * kRate));
}

Samples coloured_noise(double seconds, double low, double high) {
  Samples result = noise(frames(seconds), 1);
  const double fall = host::one_pole_weight(1000 / (2 * std::numbers::pi * high), kRate);
  const double rise = host::one_pole_weight(1000 / (2 * std::numbers::pi * low), kRate);
  double fast = 0, slow = 0;
  for (float& x : result) {
    fast += (static_cast<double>(x) - fast) * fall;
    slow += (fast - slow) * rise;
    x = static_cast<float>(fast - slow);
  }
  return result;
}

Samples with_peak(Samples audio, double level) {
  const double peak = peak_of(audio);
  return scaled(std::move(audio), db_to_linear(level) / peak);
}

Samples with_level(Samples audio, double level) {
  const double rms = rms_of(audio);
  return scaled(std::move(audio), db_to_linear(level) / rms);
}

void add(Samples& mix, const Samples& sound, double seconds) {
  const std::size_t first = frames(seconds);
  for (std::size_t i = 0; i < sound.size() && first + i < mix.size(); ++i) {
    mix[first + i] += sound[i];
  }
}

Samples in_every_channel(const Samples& mono, int channels) {
  Samples result;
  for (const float x : mono) {
    result.insert(result.end(), static_cast<std::size_t>(channels), x);
  }
  return result;
}

Samples speech() {
  static const Samples result = [] {
    Samples words(frames(6));
    double time = 0.4;
    for (const double level : {-4.0, -12.0, 0.0}) {
      for (int syllable = 0; syllable < 5; ++syllable) {
        const double pitch = 110 + 8 * (syllable % 3);
        const Samples vowel = shaped(partials(0.18, pitch), 0.006, 0.5);
        add(words, with_peak(coloured_noise(0.05, 2000, 6000), level - 12), time);
        add(words, with_peak(vowel, level), time + 0.05);
        time += 0.24;
      }
      time += 0.4;
    }
    words = with_peak(std::move(words), 0);
    add(words, with_level(coloured_noise(6, 40, 400), -54), 0);  // -60 dBFS below a peak of -6
    return words;
  }();
  return result;
}

Samples plucks(double frequency, double difference) {
  Samples result(frames(2));
  const Samples note = with_peak(shaped(partials(0.9, frequency), 0.002, 3), 0);
  add(result, note, 0);
  add(result, scaled(note, db_to_linear(-difference)), 1);
  return result;
}

Samples strums() {
  Samples result(frames(4));
  for (int strum = 0; strum < 8; ++strum) {
    int string = 0;
    for (const double frequency : {82.4, 123.5, 164.8, 207.7, 246.9}) {
      const Samples note = shaped(partials(0.45, frequency), 0.003, 1.5);
      add(result, scaled(note, strum % 2 == 0 ? 1 : db_to_linear(-10)),
          0.5 * strum + 0.015 * string++);
    }
  }
  return with_peak(std::move(result), 0);
}

Samples kick_and_spill() {
  Samples result(frames(2));
  for (const double beat : {0.0, 1.0}) {
    add(result, kick(), beat);
    add(result, scaled(snare(), 0.1), beat + 0.5);
  }
  return result;
}

Samples drum_kit() {
  Samples result(frames(4));
  for (int beat = 0; beat < 8; ++beat) add(result, beat % 2 == 0 ? kick() : snare(), 0.5 * beat);
  return with_peak(std::move(result), 0);
}

Samples mix() {
  static const Samples result = [] {
    Samples sum = scaled(drum_kit(), 0.7);
    add(sum, scaled(strums(), 0.5), 0);
    for (const double bar : {0.0, 2.0}) add(sum, scaled(plucks(41.2, 3), 0.4), bar);
    add(sum, with_level(coloured_noise(4, 200, 3000), -22), 0);
    return with_peak(std::move(sum), 0);
  }();
  return result;
}

Samples explosion() {
  return with_peak(shaped(coloured_noise(2, 40, 800), 0.01, 2), 0);
}

}  // namespace channelstrip::test::programme
