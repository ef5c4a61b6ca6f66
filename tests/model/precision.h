// The distance between the same strip in single and in double precision.

#pragma once

#include "scene.h"

namespace channelstrip::test {

struct PrecisionError {
  // The largest of any output sample, relative to the peak of the instance's outputs. It has no
  // bound: after a change of settings a resonant filter's memory may be far larger than its output.
  double signal = 0.0;
  double gain = 0.0;  // dB; the largest of the gain terms and the gain readouts

  // Keeps the greater of each field.
  void keep_maximum(const PrecisionError& other);
};

// The two runs are of one scene whose instances share neither buffers nor records.
PrecisionError precision_error(const Scene& single, const Scene& exact);

}  // namespace channelstrip::test
