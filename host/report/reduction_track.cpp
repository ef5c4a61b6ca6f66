#include "reduction_track.h"

#include "control/design/dynamics.h"

namespace channelstrip::host {
namespace {

// Lower gains count as this one in the average, so that a gain of 0 doesn't outweigh all else.
constexpr double kFloor = 1e-10;

double reduction(double gain) {
  return std::max(0.0, -linear_to_db(gain));
}

}  // namespace

void ReductionTrack::add(float gain) {
  track_.add({gain});
  least_ = std::min(least_, gain);
  decibels_ += reduction(std::max(static_cast<double>(gain), kFloor));
  ++periods_;
}

double ReductionTrack::deepest() const {
  return reduction(static_cast<double>(least_));
}

double ReductionTrack::average() const {
  return periods_ == 0 ? 0 : decibels_ / static_cast<double>(periods_);
}

}  // namespace channelstrip::host
