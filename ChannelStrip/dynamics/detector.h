// The dynamics stage: detection, linking, gain application; one quad of every channel.
//
// Each channel's detection signal (its own audio, or the key channel) passes that channel's key
// filter. A link group's level is the greatest magnitude among its channels, sample by sample. The
// gain computer runs once per group in use, on the record of the group's lowest channel, and its
// gains go to every channel of the group.

#pragma once

#include "gain_computer.h"

namespace channelstrip {

// in and out may be the same buffers, and are in the strip: the detection signals of all channels
// are read before any output is written. key may be null. dynMeters is element 2N of the meter
// array.
template <int Channels, int Groups>
void Dynamics_AlgorithmProcessFunction(const SChannelStrip_Alg_Context* context,
                                       const float* const* in, float* const* out, const float* key,
                                       int32_t quadOffset, float* dynMeters, int32_t blockOffset) {
  const Dyn_SCoefsBlock& coefs = *context->dynCoefs;
  Dyn_SState* const state = context->dynState;
  const int32_t offset = blockOffset + quadOffset;

  const bool keyed = key != nullptr && coefs.keyEnable == 1;
  float detection[Channels][kQuad];
  for (int c = 0; c < Channels; ++c) {
    load_quad(detection[c], (keyed ? key : in[c]) + offset);
    run_section<kQuad>(coefs.keyFilter, state[c].keyZ1, state[c].keyZ2, detection[c]);
  }

  float groupLevels[Groups][kQuad];  // the group's levels, later its gains
  int32_t groupLeader[Groups];       // its lowest channel, or -1 before its gains are computed
  for (int g = 0; g < Groups; ++g) {
    groupLeader[g] = -1;
    for (float& level : groupLevels[g]) level = 0.0f;
  }
  for (int c = 0; c < Channels; ++c) {
    float(&levels)[kQuad] = groupLevels[coefs.linkGroup[c]];
    for (int k = 0; k < kQuad; ++k) levels[k] = maximum(levels[k], magnitude(detection[c][k]));
  }

  for (int c = 0; c < Channels; ++c) {
    const int32_t g = coefs.linkGroup[c];
    if (groupLeader[g] < 0) {
      ProcessAudioGain(groupLevels[g], &state[c], context, state[0].dezipRate,
                       CHANNELSTRIP_METER_CHANNEL_GAIN + c, dynMeters);
      groupLeader[g] = c;
    }
    float quad[kQuad];
    load_quad(quad, in[c] + offset);
    for (int k = 0; k < kQuad; ++k) {
      quad[k] = coefs.keyListen != 0 ? detection[c][k] : quad[k] * groupLevels[g][k];
    }
    store_quad(out[c] + offset, quad);
    dynMeters[CHANNELSTRIP_METER_CHANNEL_GAIN + c] =
        dynMeters[CHANNELSTRIP_METER_CHANNEL_GAIN + groupLeader[g]];
  }
}

}  // namespace channelstrip
