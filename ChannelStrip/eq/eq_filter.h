// The equaliser: a range of bands in cascade over one quad of every channel.

#pragma once

#include "../lanes/quad.h"
#include "../lanes/section.h"
#include "eq_records.h"

namespace channelstrip {

// Bands firstBand to endBand - 1, in ascending order, over samples blockOffset + quadOffset to
// + 3 of every channel; a plain copy when the range is empty. out may be in: channels go in
// ascending order and each is read before it is written. All channels share the coefficients,
// each has its own state.
template <int Channels>
void EQ_AlgorithmProcessFunction(const EQ_SDezipCoefs* coefs, EQ_SState* state,
                                 const float* const* in, float* const* out, int32_t quadOffset,
                                 int32_t firstBand, int32_t endBand, int32_t blockOffset) {
  const int32_t offset = blockOffset + quadOffset;
  for (int c = 0; c < Channels; ++c) {
    float quad[kQuad];
    load_quad(quad, in[c] + offset);
    for (int32_t band = firstBand; band < endBand; ++band) {
      run_section<kQuad>(coefs->coefs + 5 * band, state[c].z1[band], state[c].z2[band], quad);
    }
    store_quad(out[c] + offset, quad);
  }
}

}  // namespace channelstrip
