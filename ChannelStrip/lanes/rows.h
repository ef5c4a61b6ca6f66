// One or two quads of every link group: four or eight rows, one per sample, each the Stride low
// lanes of a V. Rows are packed without gaps, so that stages without state from sample to sample
// (map) process them in full registers, whatever Stride is; stages with state go row by row.
//
// A row is loaded and stored as a whole V, which reaches past its end into the next rows. Rows are
// therefore set in ascending order. Reading a row right after map wrote it with another width, or
// mapping rows right after they were set, is slow: store forwarding fails. A later stage of the
// pipeline should do it.

#pragma once

#include "moves.h"

namespace channelstrip {

// Tells a function that only the Count low lanes of its argument are used.
template <int Count>
struct Used {};

// The narrowest register that holds as many numbers, but of Widest lanes at most.
template <int Numbers, int Widest = kLanes>
using Covering = Lanes<(Numbers <= 4       ? 4
                        : Numbers < Widest ? power_of_two_from(Numbers)
                                           : Widest)>;

template <typename V, int Stride, int Widest, int Count = 4>
class Rows {
 public:
  // Loading the last row reads the floats behind it too.
  CHANNELSTRIP_INLINE Rows() {
    for (int i = Count * Stride; i < kRoom; ++i) numbers_[i] = 0.0f;
  }

  // Row k, or as many numbers from there on as W has lanes.
  template <typename W = V>
  CHANNELSTRIP_INLINE W row(int k) const {
    return load<W>(numbers_ + k * Stride);
  }
  CHANNELSTRIP_INLINE void set_row(int k, V x) { store(numbers_ + k * Stride, x); }

  // Sets the numbers of `Many` rows from `First` on to `function` of the numbers of the first rows
  // of `from`, in full registers.
  template <int First = 0, int Many = Count, typename Function, typename From>
  CHANNELSTRIP_INLINE void map(Function function, const From& from) {
    constexpr int kMapped = Many * Stride;
    using Wide = Covering<kMapped, Widest>;
    constexpr int kWhole = kMapped / kWidth<Wide> * kWidth<Wide>;
    float* const to = numbers_ + First * Stride;
    for (int i = 0; i < kWhole; i += kWidth<Wide>) {
      store(to + i, function(Used<kWidth<Wide>>{}, from.template at<Wide>(i)));
    }
    if constexpr (kWhole < kMapped) {
      store(to + kWhole, function(Used<kMapped - kWhole>{}, from.template at<Wide>(kWhole)));
    }
  }
  template <typename Wide>
  CHANNELSTRIP_INLINE Wide at(int i) const {
    return load<Wide>(numbers_ + i);
  }

 private:
  // So many numbers and what a map of them writes behind them.
  template <int Numbers>
  static constexpr int mapped() {
    constexpr int kAtOnce = kWidth<Covering<Numbers, Widest>>;
    return (Numbers + kAtOnce - 1) / kAtOnce * kAtOnce;
  }
  static constexpr int greater(int a, int b) { return a > b ? a : b; }
  // All rows are mapped, or the last four, and the last row is loaded and stored.
  static constexpr int kRoom =
      greater((Count - 1) * Stride + kWidth<V>,
              greater(mapped<Count * Stride>(), (Count - 4) * Stride + mapped<4 * Stride>()));
  alignas(sizeof(Covering<Count * Stride, Widest>)) float numbers_[kRoom];
};

// A row is a single float, processed by itself: the scalar strip.
template <int Count>
class Rows<float, 1, 1, Count> {
 public:
  template <typename = float>
  CHANNELSTRIP_INLINE float row(int k) const {
    return numbers_[k];
  }
  CHANNELSTRIP_INLINE void set_row(int k, float x) { numbers_[k] = x; }

  template <int First = 0, int Many = Count, typename Function, typename From>
  CHANNELSTRIP_INLINE void map(Function function, const From& from) {
    for (int k = 0; k < Many; ++k) numbers_[First + k] = function(Used<1>{}, from.row(k));
  }

 private:
  float numbers_[Count];
};

}  // namespace channelstrip
