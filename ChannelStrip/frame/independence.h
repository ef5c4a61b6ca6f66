// Whether instances can be processed side by side: nothing that one of them writes overlaps
// anything else that any of them uses, but for an output that is exactly its own input.

#pragma once

#include "../dynamics/dyn_records.h"
#include "../eq/eq_records.h"
#include "../lanes/moves.h"
#include "context.h"

namespace channelstrip {

// All pieces of memory in use, the written ones first. Addresses are counted in floats, modulo the
// range of Word: pieces far apart may be taken to overlap, but no overlap is missed.
template <typename Word, int Written, int All>
class Extents {
 public:
  // All pieces are empty at first, and those that fill the last register remain so. Initialisers of
  // such arrays may become calls of memset.
  Extents() {
    for (int i = 0; i < kRounded; i += kWords) {
      store(begin_ + i, Words{});
      store(end_ + i, Words{});
    }
  }

  template <typename T>
  void add(const T* first, int64_t count) {
    static_assert(sizeof(T) % 4 == 0);
    begin_[size_] = static_cast<Word>(reinterpret_cast<uintptr_t>(first) / 4);
    end_[size_] = begin_[size_] + static_cast<Word>(static_cast<int64_t>(sizeof(T) / 4) * count);
    ++size_;
  }

  // How many pairs of a written piece and another one overlap; two written ones count twice. Pieces
  // overlap if each begins before the other ends, that is if both differences are negative.
  Word overlaps() const {
    Words found{};
    for (int w = 0; w < Written; ++w) {
      for (int i = 0; i < kRounded; i += kWords) {
        const Words from_its_end = begin_[w] - load<Words>(end_ + i);
        const Words from_our_end = load<Words>(begin_ + i) - end_[w];
        found += (from_its_end & from_our_end) >> (8 * sizeof(Word) - 1);
      }
    }
    Word sum = 0;
    for (int i = 0; i < kWords; ++i) sum += found[i];
    return sum - Written;  // each overlaps itself
  }

 private:
  typedef Word Words __attribute__((vector_size(4 * kLanes)));
  static constexpr int kWords = static_cast<int>(sizeof(Words) / sizeof(Word));
  static constexpr int kRounded = (All + kWords - 1) / kWords * kWords;

  Word begin_[kRounded], end_[kRounded];
  int size_ = 0;
};

template <typename Word, int Channels, int Strips>
bool are_independent_by(const SChannelStrip_Alg_Context* const* strips, int64_t samples) {
  Extents<Word, Strips*(Channels + 4), Strips*(2 * Channels + 13)> extents;
  Word in_place = 0;
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

// 32-bit words are quicker to compare. Only what they take to overlap is compared with all 64 bits.
template <int Channels, int Strips>
bool are_independent(const SChannelStrip_Alg_Context* const* strips, int64_t samples) {
  return are_independent_by<uint32_t, Channels, Strips>(strips, samples) ||
         are_independent_by<uint64_t, Channels, Strips>(strips, samples);
}

}  // namespace channelstrip
