// Whether instances can be processed side by side: nothing that one of them writes overlaps
// anything else that any of them uses, but for an output that is exactly its own input.

#pragma once

#include "../dynamics/dyn_records.h"
#include "../eq/eq_records.h"
#include "../lanes/moves.h"
#include "context.h"

namespace channelstrip {

// Pieces of memory, the written ones first. Addresses are counted in floats, modulo 2^32: pieces
// that lie 8 GiB apart, give or take their lengths, may count as overlapping, never the reverse.
template <int Written, int All>
class Extents {
 public:
  template <typename T>
  void add(const T* first, int64_t count) {
    static_assert(sizeof(T) % 4 == 0);
    begin_[size_] = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(first) / 4);
    end_[size_] =
        begin_[size_] + static_cast<uint32_t>(static_cast<int64_t>(sizeof(T) / 4) * count);
    ++size_;
  }

  // How often a written piece overlaps another, once for each of two written ones.
  int overlaps() const {
    IntsOf<V> found{};
    for (int w = 0; w < Written; ++w) {
      for (int i = 0; i < kRounded; i += kLanes) {
        const auto begins_first = (IntsOf<V>)(begin_[w] - load<WordsOf<V>>(end_ + i));
        const auto ends_last = (IntsOf<V>)(load<WordsOf<V>>(begin_ + i) - end_[w]);
        found += (begins_first & ends_last) >> 31;
      }
    }
    int32_t sum = 0;
    for (int i = 0; i < kLanes; ++i) sum -= found[i];
    return sum - Written;  // each overlaps itself
  }

 private:
  using V = Lanes<kLanes>;

  static constexpr int kRounded = (All + kLanes - 1) / kLanes * kLanes;
  uint32_t begin_[kRounded] = {}, end_[kRounded] = {};  // the last ones may be empty
  int size_ = 0;
};

template <int Channels, int Strips>
bool are_independent(const SChannelStrip_Alg_Context* const* strips, int64_t samples) {
  Extents<Strips*(Channels + 4), Strips*(2 * Channels + 13)> extents;
  int in_place = 0;
  for (int s = 0; s < Strips; ++s) {
    const SChannelStrip_Alg_Context& strip = *strips[s];
    for (int c = 0; c < Channels; ++c) {
      extents.add(strip.outputs[c], samples);
      in_place += strip.outputs[c] == strip.inputs[c];
    }
    extents.add(strip.dynState, Channels);
    extents.add(strip.eqDezipCoefs, 1);
    extents.add(strip.eqState, Channels);
    extents.add(*strip.meterOutputs, 3 * Channels + 4);
  }
  for (int s = 0; s < Strips; ++s) {
    const SChannelStrip_Alg_Context& strip = *strips[s];
    for (int c = 0; c < Channels; ++c) extents.add(strip.inputs[c], samples);
    const int32_t key = *strip.keyInputIndex;
    extents.add(strip.inputs[key], key == 0 ? 0 : samples);
    extents.add(strip.dynCoefs, 1);
    extents.add(strip.eqTargetCoefs, 1);
    extents.add(&strip, 1);
    extents.add(strip.inputs, key < Channels ? Channels : key + 1);
    extents.add(strip.outputs, Channels);
    extents.add(strip.keyInputIndex, 1);
    extents.add(strip.sampleCount, 1);
    extents.add(strip.meterOutputs, 1);
  }
  return extents.overlaps() == in_place;
}

}  // namespace channelstrip
