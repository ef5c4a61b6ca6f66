// How far single precision lies from the same strip in double precision.

#pragma once

#include "scene.h"

namespace channelstrip::test {

struct PrecisionError {
  // Of any output sample, relative to the peak of the instance's outputs. Not bounded: a resonance
  // that new settings release may leave memory far above what comes out.
  double signal = 0.0;
  double gain = 0.0;  // dB; of either gain term and of the gain readouts

  // Keeps the greater of each field.
  void keep_maximum(const PrecisionError& other);
};

// Between two runs of one scene whose instances share neither buffers nor records.
PrecisionError precision_error(const Scene& single, const Scene& exact);

}  // namespace channelstrip::test
