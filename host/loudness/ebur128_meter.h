// libebur128's meter, with the weight of every channel of a layout.

#pragma once

#include <ebur128.h>

#include <cstddef>
#include <memory>
#include <span>

#include "control/design/channel_layout.h"

namespace channelstrip::host {

struct DestroyEbur128 {
  void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};
using Ebur128 = std::unique_ptr<ebur128_state, DestroyEbur128>;

// `measures` are EBUR128_MODE_I ... By label: the LFE doesn't count, surrounds at 60 to 120 degrees
// weigh 1.5 dB more. A pair Ls Rs stands at 110 degrees or, with a pair Lb Rb at 135 behind it, at
// 90. A mono stream is one loudspeaker: it reads 3 dB less than the same signal in both channels of
// a stereo one. Throws std::invalid_argument for a sample rate outside 16 to 2822400 Hz.
Ebur128 open_ebur128(double sample_rate, const ChannelLayout& layout, int measures);

// Adds a whole number of interleaved frames.
void add_frames(ebur128_state& meter, std::span<const float> frames);

// Of the last 0.1 s, rounded down to whole frames, in LUFS; -infinity for silence.
double step_loudness(ebur128_state& meter);

// Frames in 0.1 s, the step by which the blocks of 0.4 s move on.
inline std::size_t frames_per_step(const ebur128_state& meter) {
  return (meter.samplerate + 5) / 10;
}

}  // namespace channelstrip::host
