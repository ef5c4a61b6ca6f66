// Every stem format with a link map that uses all of its groups: each group's gain computer must
// behave alike.

#pragma once

#include <ChannelStrip/dynamics/fast_log.h>
#include <tests/support/compare.h>
#include <tests/support/every_format.h>
#include <tests/support/strip.h>

#include <cmath>
#include <limits>

namespace channelstrip::test {

inline constexpr float kInfinity = std::numeric_limits<float>::infinity();
inline constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// A level between two entries of the logarithm table, and its conversion to dB.
inline constexpr float kLevel = 0.3f;
inline const float kLevelDb = LevelToDb(kLevel);

inline float one_float_below(float x) {
  return std::nextafter(x, -kInfinity);
}
inline float one_float_above(float x) {
  return std::nextafter(x, kInfinity);
}

// All formats but Mono, whose only channel leads its group.
inline auto formats_with_followers() {
  return testing::ValuesIn(host::stem_formats().subspan(1));
}

// All formats but Mono and Stereo.
inline auto formats_of_several_groups() {
  return testing::ValuesIn(host::stem_formats().subspan(2));
}

class EveryGroup : public EveryFormat {
 protected:
  // The detector level is the sample's magnitude, and ranges limit no ordinary term.
  EveryGroup() {
    strip.dyn.detectorMode = 1;
    strip.dyn.compRange = strip.dyn.expRange = -600;
    strip.jump_to_targets();
    // Channels 0 to G-1 each lead a group.
    for (size_t c = 0; c < channels(); ++c) {
      strip.dyn.linkGroup[c] = static_cast<int32_t>(groups() - 1 - leader(c));
    }
  }

  static size_t leader(size_t channel) { return channel % groups(); }

  // Processes one block of a constant level in all channels.
  void play(float level) {
    strip.fill_inputs(level);
    strip.process();
  }

  // Processes one block that ends with `ending`, after a constant lead_in.
  void play(float lead_in, std::initializer_list<float> ending) {
    strip.fill_inputs(lead_in);
    for (auto& channel : strip.in) std::copy_backward(ending.begin(), ending.end(), channel.end());
    strip.process();
  }

  // The field's value, which all groups' leaders must have to the bit.
  template <typename T>
  T state(T Dyn_SState::*field) const {
    const T value = strip.dyn_state[0].*field;
    for (size_t c = 1; c < groups(); ++c) {
      EXPECT_TRUE(same_record(strip.dyn_state[c].*field, value)) << "channel " << c;
    }
    return value;
  }

  template <typename T>
  void set_state(T Dyn_SState::*field, T value) {
    for (Dyn_SState& state : strip.dyn_state) state.*field = value;
  }

  // The output sample, which all channels must have to the bit.
  float output(size_t sample) const {
    const float value = strip.out[0][sample];
    for (size_t c = 1; c < channels(); ++c) {
      EXPECT_TRUE(same_record(strip.out[c][sample], value)) << "channel " << c;
    }
    return value;
  }

  // Sets all of the dynamics readouts.
  void set_readouts(float value) {
    std::fill(strip.meters.begin() + 2 * strip.channels, strip.meters.end(), value);
  }

  // Sets gain terms that no target moves: all weights are 0.
  void freeze_terms(float comp_gain, float exp_gain) {
    strip.dyn.compAttack = strip.dyn.compRelease = 0;
    strip.dyn.expAttack = strip.dyn.expRelease = 0;
    set_state(&Dyn_SState::compGain, comp_gain);
    set_state(&Dyn_SState::expGain, exp_gain);
  }

  Strip strip{format()};
};

}  // namespace channelstrip::test
