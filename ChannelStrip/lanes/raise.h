// The running maximum of every meter and readout.

#pragma once

namespace channelstrip {

// Strictly greater, so a NaN never enters a meter and one that is there stays until the host
// resets it.
inline float raise(float held, float value) {
  return value > held ? value : held;
}

}  // namespace channelstrip
