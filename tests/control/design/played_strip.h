// A mono strip at 48 kHz, processed by the library.

#pragma once

#include <ChannelStrip/frame/entry_points.h>

#include <cstddef>
#include <numbers>
#include <vector>

#include "control/design/dynamics.h"
#include "control/design/strip_coefficients.h"
#include "control/library/library.h"
#include "control/strip/instance.h"
#include "records.h"

namespace channelstrip::test {

class PlayedStrip {
 public:
  static constexpr double kRate = 48000;

  explicit PlayedStrip(const host::StripSettings& settings)
      : instance_(*layout_of("Mono").format, design(settings)) {}

  void set(const host::StripSettings& settings) { instance_.set_coefficients(design(settings)); }

  // The input's length must be a multiple of 16; the output has the same. An empty key means none.
  std::vector<float> play(const std::vector<float>& input, const std::vector<float>& key = {}) {
    static const host::Library library(CHANNELSTRIP_LIBRARY);
    std::vector<float> output(input.size());
    const float* const inputs[] = {input.data(), key.data()};
    float* const outputs[] = {output.data()};
    SChannelStrip_Alg_Context context =
        *instance_.prepare(inputs, outputs, static_cast<int>(input.size()));
    const std::int32_t key_index = key.empty() ? 0 : 1;
    context.keyInputIndex = &key_index;
    const SChannelStrip_Alg_Context* strip = &context;
    library.entry_point (*layout_of("Mono").format)(&strip, &strip + 1);
    return output;
  }
  std::vector<float> play(float level, std::size_t samples) {
    return play(std::vector(samples, level));
  }

  const SChannelStrip_Alg_Context& context() { return *instance_.prepare(nullptr, nullptr, 0); }
  const Dyn_SState& state() { return *context().dynState; }
  host::MeterReading meters() const { return instance_.meters(); }

 private:
  static host::StripCoefficients design(const host::StripSettings& settings) {
    return host::design_strip(settings, kRate, layout_of("Mono"));
  }

  host::Instance instance_;
};

inline constexpr double kOneOverE = 1 / std::numbers::e;

// dB; the error of a constant level's conversion (3e-6 octaves), of its gain's (7e-6 octaves), and
// of the gain term as a float.
inline constexpr double kConversions = 2e-4;

// A detector without smoothing.
inline constexpr host::DetectorSettings kImmediate{host::DetectorMode::kSmooth, 0};

inline float linear(double db) {
  return static_cast<float>(host::db_to_linear(db));
}
inline double db(float linear) {
  return host::linear_to_db(static_cast<double>(linear));
}

// The gain in dB after a second at a constant level.
inline double settled_gain(PlayedStrip& strip, double level) {
  return db(strip.play(linear(level), 48000).back()) - level;
}

}  // namespace channelstrip::test
