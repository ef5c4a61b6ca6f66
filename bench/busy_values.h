// The settings of the strips that are timed.

#pragma once

#include <control/parameters/values.h>

#include <cstddef>
#include <string_view>

namespace channelstrip::bench {

inline void set(host::Values& values, std::string_view symbol, double value) {
  values.of[*host::index_of(symbol)] = value;
}

// Eight bands, four of them behind the dynamics, a compressor with a soft knee and a gate.
inline host::Values busy_values() {
  using namespace host;
  Values values;
  for (std::size_t band = 0; band < kBandCount; ++band) {
    const std::size_t group = kFirstBandGroup + band;
    values.of[*index_of(group, "on")] = 1;
    values.of[*index_of(group, "frequency")] = 250.0 * static_cast<double>(band + 1);
    values.of[*index_of(group, "gain")] = 3;
    values.of[*index_of(group, "position")] = band < 4 ? 0 : 1;
  }
  set(values, "compressor_on", 1);
  set(values, "expander_on", 1);
  set(values, "expander_gate", 1);
  set(values, "key_filter_on", 1);
  return values;
}

}  // namespace channelstrip::bench
