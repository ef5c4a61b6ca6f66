// What programs that measure by turns share: every figure is a median over turns that the rivals
// take one right after the other in one process, so that what else the machine does hits all alike.

#pragma once

#include <sched.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace channelstrip::bench {

// A thread that moves finds cold caches.
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
