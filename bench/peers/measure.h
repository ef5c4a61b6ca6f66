// Processors measured in turns.

#pragma once

#include <vector>

#include "processor.h"

namespace channelstrip::bench {

inline constexpr int kTurns = 101;

// Median nanoseconds per frame of each. A turn is the whole programme, with denormals flushed.
std::vector<double> measure(const std::vector<Processor*>& processors, int channels,
                            int samples_per_call);

}  // namespace channelstrip::bench
