// The meter readings of several periods as one.

#pragma once

#include <cstddef>
#include <vector>

#include "control/strip/instance.h"

namespace channelstrip::host {

// Linear. Peaks and reductions are extremes over all samples. A gain is the least of the periods'
// greatest gains, as in StripMeters: a reduction that lasted for a whole period.
struct MeterInterval {
  std::vector<float> input_peak;    // per channel
  std::vector<float> output_peak;   // per channel
  float level = 0;                  // the detector's, in the period that gave `gain`
  float gain = 0;                   // of the least reduced link group, without makeup
  float compressor_reduction = 0;   // 1 - least factor of any group
  float expander_reduction = 0;     // 1 - least factor of any group
  std::vector<float> channel_gain;  // per channel: its link group's, without makeup
};

// Combines periods. Among periods with the same gain the greatest level counts: without dynamics
// the gain of every period is 1.
class IntervalMeter {
 public:
  void add(const MeterReading& period);

  std::size_t periods() const { return periods_; }
  const MeterInterval& interval() const { return interval_; }

  void reset() { periods_ = 0; }

 private:
  MeterInterval interval_;
  std::size_t periods_ = 0;
};

}  // namespace channelstrip::host
