// Sees what the gain computer compares, sample by sample.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

namespace channelstrip::model {

class LevelWatch {
 public:
  virtual ~LevelWatch() = default;

  // The detector's level, the same in dB, and the gate as the sample met it.
  virtual void see(double level, double db, bool gate_was_open, const Dyn_SCoefsBlock& c) = 0;
};

}  // namespace channelstrip::model
