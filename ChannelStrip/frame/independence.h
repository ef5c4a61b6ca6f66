// Whether instances can be processed side by side: nothing that one of them writes overlaps
// anything else that any of them uses, but for an output that is exactly its own input.

#pragma once

#include "../dynamics/dyn_records.h"
#include "../eq/eq_records.h"
#include "context.h"

namespace channelstrip {

// Pieces of memory, the written ones first.
template <int Most>
class Extents {
 public:
  Extents() {
    for (int i = 0; i < kRounded; ++i) begin_[i] = end_[i] = 0;  // empty
  }

  template <typename T>
  void add(const T* first, int64_t count) {
    begin_[size_] = reinterpret_cast<intptr_t>(first);
    end_[size_] = begin_[size_] + static_cast<int64_t>(sizeof(T)) * count;
    ++size_;
  }
  void end_of_written() { written_ = size_; }

  // How often a written piece overlaps another, once for each of two written ones.
  int overlaps() const {
    Longs found{};
    for (int w = 0; w < written_; ++w) {
      const Longs begin = Longs{} + begin_[w], end = Longs{} + end_[w];
      for (int i = 0; i < size_; i += kLongs) {
        Longs others_begin, others_end;
        __builtin_memcpy(&others_begin, begin_ + i, sizeof others_begin);
        __builtin_memcpy(&others_end, end_ + i, sizeof others_end);
        found += (begin < others_end) & (others_begin < end);
      }
    }
    int64_t sum = 0;
    for (int i = 0; i < kLongs; ++i) sum -= found[i];
    return static_cast<int>(sum) - written_;  // each overlaps itself
  }

 private:
  static constexpr int kLongs = 4;
  typedef int64_t Longs __attribute__((vector_size(8 * kLongs)));

  static constexpr int kRounded = (Most + kLongs - 1) / kLongs * kLongs;
  int64_t begin_[kRounded], end_[kRounded];
  int size_ = 0, written_ = 0;
};

template <int Channels, int Strips>
bool are_independent(const SChannelStrip_Alg_Context* const* strips, int64_t samples) {
  Extents<Strips*(2 * Channels + 13)> extents;
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
  extents.end_of_written();
  for (int s = 0; s < Strips; ++s) {
    const SChannelStrip_Alg_Context& strip = *strips[s];
    for (int c = 0; c < Channels; ++c) extents.add(strip.inputs[c], samples);
    const int32_t key = *strip.keyInputIndex;
    if (key != 0) extents.add(strip.inputs[key], samples);
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
