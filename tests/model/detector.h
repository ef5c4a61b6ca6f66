// The dynamics stage: key filter, linking, one gain computer per group in use, application.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>
#include <ChannelStrip/frame/context.h>

#include <algorithm>
#include <cmath>

#include "gain_computer.h"
#include "section.h"
#include "strip_state.h"

namespace channelstrip::model {

// Samples `at` to `at` + 3 of every channel, in place. `key` may be null.
template <typename Real>
void process_dynamics(const Dyn_SCoefsBlock& c, DynMemory<Real>* memory, Real* const* audio,
                      const Real* key, int at, Real rate, Real* meters, int channels, int groups,
                      SumOrder order) {
  // Every source is read before anything is written.
  Real detection[kMaxChannels][kQuad];
  const Section<Real> key_filter(c.keyFilter);
  for (int ch = 0; ch < channels; ++ch) {
    const Real* source = key != nullptr && c.keyEnable == 1 ? key : audio[ch];
    for (int s = 0; s < kQuad; ++s) {
      detection[ch][s] =
          run_section(key_filter, source[at + s], memory[ch].key_z1, memory[ch].key_z2, order);
    }
  }

  Real levels[kMaxGroups][kQuad] = {};
  int leader[kMaxGroups];
  std::fill_n(leader, groups, -1);
  for (int ch = 0; ch < channels; ++ch) {
    Real* group_levels = levels[c.linkGroup[ch]];
    for (int s = 0; s < kQuad; ++s) {
      group_levels[s] = maximum(group_levels[s], std::fabs(detection[ch][s]));
    }
  }

  Real* channel_gain = meters + CHANNELSTRIP_METER_CHANNEL_GAIN;
  for (int ch = 0; ch < channels; ++ch) {
    const int group = c.linkGroup[ch];
    if (leader[group] < 0) {
      process_gain(levels[group], memory[ch], c, rate, CHANNELSTRIP_METER_CHANNEL_GAIN + ch, meters,
                   order);
      leader[group] = ch;
    }
    // Two channels may share a buffer: the later one then reads what the earlier one wrote.
    Real* quad = audio[ch] + at;
    const Real before[kQuad] = {quad[0], quad[1], quad[2], quad[3]};
    for (int s = 0; s < kQuad; ++s) {
      quad[s] = c.keyListen != 0 ? detection[ch][s] : before[s] * levels[group][s];
    }
    channel_gain[ch] = channel_gain[leader[group]];
  }
}

}  // namespace channelstrip::model
