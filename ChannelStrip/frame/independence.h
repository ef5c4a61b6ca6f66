// Whether instances can be processed side by side: nothing that one of them writes overlaps
// anything else that any of them uses, but for an output that is exactly its own input.

#pragma once

#include "../dynamics/dyn_records.h"
#include "../eq/eq_records.h"
#include "../lanes/layout.h"
#include "context.h"

namespace channelstrip {

// All pieces of memory in use, the written ones first. Addresses are counted in floats, modulo the
// range of Word: pieces far apart may be taken to overlap, but no overlap is missed.
template <typename Word, int Widest, int Written, int All>
class Extents {
 public:
  // Places behind the pieces, which fill the last register, hold pieces of no floats. Initialisers
  // of such arrays may become calls of memset.
  Extents() {
    for (int i = All; i < kRounded; ++i) last_[i] = size_[i] = 0;
  }

  template <typename T>
  void add(const T* first, int64_t count) {
    static_assert(sizeof(T) % 4 == 0);
    const auto begin = static_cast<Word>(reinterpret_cast<uintptr_t>(first) / 4);
    const auto size = static_cast<Word>(static_cast<int64_t>(sizeof(T) / 4) * count);
    if (added_ < Written) begin_[added_] = begin;
    last_[added_] = begin + size - 1;
    size_[added_] = size;
    ++added_;
  }

  // Whether none of `Count` written pieces from number `first` on, all of one size, overlaps a
  // later piece. They stand in one register, or else begin one.
  template <int Count>
  bool are_apart(int first) const {
    if constexpr (Count > kWords) {
      return are_apart<kWords>(first) && are_apart<Count - kWords>(first + kWords);
    } else {
      Words begin[Count];
      for (int w = 0; w < Count; ++w) begin[w] = Words{} + begin_[first + w];
      // Two pieces overlap if the last float of one lies fewer floats behind the begin of the other
      // than both have, less one. All written ones have the same size: the least distance decides.
      Words apart = ~Words{};
      const auto compare = [&](int i, auto left_out) {
        const auto last = load<Words>(last_ + i);
        Words least = ~Words{};
        for (int w = 0; w < Count; ++w) {
          const Words distance = (last - begin[w]) | left_out(w);
          least = distance < least ? distance : least;
        }
        apart &= (Words)(least >= load<Words>(size_ + i) + (size_[first] - 1));
      };
      // In their own register they leave out themselves and what comes before.
      const int lane = first % kWords;
      compare(first - lane, [=](int w) { return first_lanes(lane + w + 1); });
      for (int i = first - lane + kWords; i < kRounded; i += kWords) {
        compare(i, [](int) { return Words{}; });
      }
      return !any_bit(~apart);
    }
  }

 private:
  typedef Word Words __attribute__((vector_size(4 * Widest)));
  static constexpr int kWords = static_cast<int>(sizeof(Words) / sizeof(Word));
  static constexpr int kRounded = (All + kWords - 1) / kWords * kWords;

  // All bits set in the first `count` lanes, none in the others.
  CHANNELSTRIP_INLINE static Words first_lanes(int count) {
    static constexpr Words kBits[2] = {~Words{}, Words{}};
    return load<Words>(reinterpret_cast<const Word*>(kBits) + kWords - count);
  }

  Word begin_[Written], last_[kRounded], size_[kRounded];
  int added_ = 0;
};

template <typename Word, int Channels, int Strips>
bool are_independent_by(const SChannelStrip_Alg_Context* const* strips, int64_t samples) {
  using Strip = const SChannelStrip_Alg_Context&;
  constexpr int kOutputs = Strips * Channels;
  // The few pieces of one strip would leave most of a wider register empty.
  constexpr int kWidest = Strips == 1 && kLanes > 8 ? 8 : kLanes;
  Extents<Word, kWidest, kOutputs + 4 * Strips, Strips*(2 * Channels + 13)> extents;
  const auto add = [&](int64_t count, auto piece_of) {
    for (int s = 0; s < Strips; ++s) extents.add(piece_of(*strips[s]), count);
  };
  for (int c = 0; c < Channels; ++c) add(samples, [=](Strip strip) { return strip.outputs[c]; });
  add(Channels, [](Strip strip) { return strip.dynState; });
  add(1, [](Strip strip) { return strip.eqDezipCoefs; });
  add(Channels, [](Strip strip) { return strip.eqState; });
  add(3 * Channels + 4, [](Strip strip) { return *strip.meterOutputs; });
  for (int s = 0; s < Strips; ++s) {
    Strip strip = *strips[s];
    for (int c = 0; c < Channels; ++c) {  // in place, the output stands for both
      extents.add(strip.inputs[c], strip.inputs[c] == strip.outputs[c] ? 0 : samples);
    }
    const int32_t key = *strip.keyInputIndex;
    extents.add(strip.inputs[key], key == 0 ? 0 : samples);
    extents.add(strip.inputs, key < Channels ? Channels : key + 1);
  }
  add(1, [](Strip strip) { return strip.dynCoefs; });
  add(1, [](Strip strip) { return strip.eqTargetCoefs; });
  add(1, [](Strip strip) { return &strip; });
  add(Channels, [](Strip strip) { return strip.outputs; });
  add(1, [](Strip strip) { return strip.keyInputIndex; });
  add(1, [](Strip strip) { return strip.sampleCount; });
  add(1, [](Strip strip) { return strip.meterOutputs; });

  bool apart = extents.template are_apart<kOutputs>(0);
  for (int record = 0; record < 4; ++record) {
    apart &= extents.template are_apart<Strips>(kOutputs + record * Strips);
  }
  return apart;
}

// 32-bit words are quicker to compare. Only what they take to overlap is compared with all 64 bits.
template <int Channels, int Strips>
bool are_independent(const SChannelStrip_Alg_Context* const* strips, int64_t samples) {
  return are_independent_by<uint32_t, Channels, Strips>(strips, samples) ||
         are_independent_by<uint64_t, Channels, Strips>(strips, samples);
}

}  // namespace channelstrip
