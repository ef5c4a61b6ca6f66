// Four samples of what the lanes of V are, of which Stride low ones matter, without gaps in memory:
// so that work without memory from sample to sample fills its registers whatever the number of
// lanes.
//
// A row reaches over its end into the next one, which is therefore written after it. Rows that were
// just written are slow to map, and just mapped ones slow to read: better a stage later.

#pragma once

#include "moves.h"

namespace channelstrip {

// Tells a function how many low lanes of its argument matter.
template <int Count>
struct Used {};

template <typename V, int Stride>
class Rows {
 public:
  // What stands behind the last row is read along with it.
  CHANNELSTRIP_INLINE Rows() {
    for (int i = kCount; i < kRoom; ++i) numbers_[i] = 0.0f;
  }

  CHANNELSTRIP_INLINE V row(int k) const { return load<V>(numbers_ + k * Stride); }
  CHANNELSTRIP_INLINE void set_row(int k, V x) { store(numbers_ + k * Stride, x); }

  // Sets all numbers to a function of those at the same place in other rows.
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

// Of one plain sample after the other.
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
