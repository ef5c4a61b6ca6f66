// What the dynamics took from a link group over time.

#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

#include "folding_track.h"

namespace channelstrip::host {

// Takes one gain per period of StripStream: the greatest in it, linear, without makeup. So a
// reduction that is drawn lasted for a whole period.
class ReductionTrack {
 public:
  struct Column {
    float least = 1;

    void merge(const Column& other) { least = std::min(least, other.least); }
  };

  explicit ReductionTrack(std::size_t columns = 240) : track_(columns) {}

  void add(float gain);

  std::span<const Column> columns() const { return track_.columns(); }
  std::size_t periods_per_column() const { return track_.units_per_column(); }

  double deepest() const;  // dB, 0 or more
  double average() const;  // dB, 0 or more: the mean of the periods' decibels

 private:
  FoldingTrack<Column> track_;
  float least_ = 1;
  double decibels_ = 0;  // sum
  std::size_t periods_ = 0;
};

}  // namespace channelstrip::host
