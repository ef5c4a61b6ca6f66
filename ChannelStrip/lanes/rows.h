// The quad of every link group: four rows, one per sample, each the Stride low lanes of a V. Rows
// are packed without gaps, so that stages without state from sample to sample (map) process them in
// full registers, whatever Stride is; stages with state go row by row.
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

template <typename V, int Stride>
class Rows {
 public:
  // Loading the last row reads the floats behind it too.
  CHANNELSTRIP_INLINE Rows() {
    for (int i = kCount; i < kRoom; ++i) numbers_[i] = 0.0f;
  }

  CHANNELSTRIP_INLINE V row(int k) const { return load<V>(numbers_ + k * Stride); }
  CHANNELSTRIP_INLINE void set_row(int k, V x) { store(numbers_ + k * Stride, x); }

  // Sets every number to `function` of the numbers at the same place in `from`, in full registers.
  template <typename Function, typename... From>
  CHANNELSTRIP_INLINE void map(Function function, const From&... from) {
    constexpr int kWhole = kCount / kLanes * kLanes;
    for (int i = 0; i < kWhole; i += kLanes) {
      store(numbers_ + i, function(Used<kLanes>{}, from.at(i)...));
    }
    if constexpr (kWhole < kCount) {
      store(numbers_ + kWhole, function(Used<kCount - kWhole>{}, from.at(kWhole)...));
    }
  }
  CHANNELSTRIP_INLINE Lanes<kLanes> at(int i) const { return load<Lanes<kLanes>>(numbers_ + i); }

 private:
  static constexpr int kCount = 4 * Stride;
  static constexpr int kRoom = (3 * Stride + kWidth<V> + kLanes - 1) / kLanes * kLanes;
  alignas(4 * kLanes) float numbers_[kRoom];
};

// A row is a single float, processed by itself: the scalar strip.
template <>
class Rows<float, 1> {
 public:
  CHANNELSTRIP_INLINE float row(int k) const { return numbers_[k]; }
  CHANNELSTRIP_INLINE void set_row(int k, float x) { numbers_[k] = x; }

  template <typename Function, typename... From>
  CHANNELSTRIP_INLINE void map(Function function, const From&... from) {
    for (int k = 0; k < 4; ++k) numbers_[k] = function(Used<1>{}, from.row(k)...);
  }

 private:
  float numbers_[4];
};

}  // namespace channelstrip
