// What programs share that measure in turns: in each turn all candidates run one right after the
// other in one process, so that other load on the machine hits all alike; every figure is a median
// over the turns.

#pragma once

#include <sched.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace channelstrip::bench {

// A thread that moves to another processor finds cold caches there.
inline void stay_on_this_processor() {
  cpu_set_t processors;
  CPU_ZERO(&processors);
  CPU_SET(static_cast<unsigned>(sched_getcpu()), &processors);
  sched_setaffinity(0, sizeof processors, &processors);
}

template <typename Work>
double nanoseconds(Work&& work) {
  const auto begin = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::nano>(std::chrono::steady_clock::now() - begin).count();
}

inline double median(std::vector<double> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

}  // namespace channelstrip::bench
