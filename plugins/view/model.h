// All that a picture of a strip shows, as plain data: what is set, what the meters say, and what
// the pointer and the keyboard are on.

#pragma once

#include <channelstrip/channelstrip.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "parameters.h"
#include "target.h"

namespace channelstrip::view {

inline constexpr float kSilence = -200;  // dB, in place of minus infinity

// What changes with the settings alone.
struct Setup {
  std::uint32_t format = 0;
  double sample_rate = 48000;
  std::vector<double> values;  // one per parameter
  double least_range = 0;      // dB of the equaliser's plot: it stays while a handle is held
  std::vector<bool> adjusted;  // one per parameter: the strip can't have this value as it stands
  std::array<bool, kBands> left_out{};  // bands that are on, but that the strip can't have

  // Magnitudes in dB at `frequencies`, which ascend and are closest where bands are narrow.
  std::vector<double> frequencies;
  std::vector<double> sum;                        // of the bands that are on
  std::array<std::vector<double>, kBands> bands;  // empty of one that isn't heard
  std::vector<double> key_filter;

  // Gains in dB that settle at constant `levels` in dB, without makeup.
  std::vector<double> levels, compressor, expander_open, expander_shut;

  bool is_on(std::size_t parameter) const { return values[parameter] != 0; }
  bool is_gate() const {
    return is_on(parameters().expander.on) && is_on(parameters().expander.gate);
  }
};

// Throws std::bad_alloc. [owner of settings]
Setup setup_of(const channelstrip_settings* settings, std::uint32_t format, double sample_rate);

// A gate is held while its level has fallen below the lower threshold and its gain hasn't moved.
enum class GateState { kClosed, kOpen, kHeld };

// One channel's meter, in dB.
struct ChannelMeter {
  float level = kSilence, hold = kSilence;
  std::uint64_t overs = 0;  // samples beyond full scale
};

// The dynamics of a channel's link group, in dB.
struct ChannelDynamics {
  float detector = kSilence, compressor = 0, expander = 0;
};

// A step of the history, in dB: the loudest channel, the deepest reductions.
struct Moment {
  float input = kSilence, output = kSilence, compressor = 0, expander = 0;
};
inline constexpr double kHistorySeconds = 6;
inline constexpr std::size_t kHistoryMoments = 240;

inline constexpr std::size_t kSpectrumPoints = 240;
inline constexpr double kLowestFrequency = 18, kHighestFrequency = 22000;  // that are shown
using Spectrum = std::array<float, kSpectrumPoints>;  // dB of a sine, evenly along a log axis

// What changes while audio runs.
struct Live {
  std::array<ChannelMeter, CHANNELSTRIP_MOST_CHANNELS> inputs, outputs;
  std::array<ChannelDynamics, CHANNELSTRIP_MOST_CHANNELS> dynamics;
  float compressor = 0, expander = 0;  // dB, as deep as it lately was
  GateState gate = GateState::kClosed;
  bool has_key = false;  // something is connected to the side-chain
  bool has_detector = true, has_spectrum = false;
  Spectrum input_spectrum, output_spectrum;
  std::vector<Moment> history;  // the newest comes last; kHistoryMoments at most
};

// What the pointer and the keyboard are on.
struct Attention {
  Target hovered, focused;
  bool is_pressed = false;  // the pointer holds what is hovered
  bool is_editing = false;  // a value is being typed at what is focused
  std::string typed;
  bool can_undo = false, can_redo = false;
};

struct Model {
  Setup setup;
  Live live;
  Attention attention;
};

}  // namespace channelstrip::view
