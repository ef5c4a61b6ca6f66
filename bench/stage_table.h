// Times stages that run alone, in turns with the whole strip.

#pragma once

#include <fmt/format.h>

#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include "turns.h"

namespace channelstrip::bench {

inline constexpr int kSamples = 4096;  // that every stage runs over
inline constexpr int32_t kQuads = kSamples / 4;

struct Stage {
  const char* name;
  std::function<void()> run;  // over all samples
  std::vector<double> times = {}, parts = {};
};

// Prints how many nanoseconds every stage takes per quad, also as a fraction of what the first
// stage, the whole strip, takes.
inline void measure(std::string_view title, std::vector<Stage> stages) {
  constexpr int kTurns = 201;
  for (int turn = 0; turn < kTurns; ++turn) {
    for (Stage& stage : stages) {
      stage.times.push_back(nanoseconds(stage.run) / kQuads);
      stage.parts.push_back(stage.times.back() / stages.front().times.back());
    }
  }
  for (const Stage& stage : stages) {
    fmt::print("{:10}{:30}{:8.2f}{:9.2f}\n", std::exchange(title, ""), stage.name,
               median(stage.times), median(stage.parts));
  }
}

}  // namespace channelstrip::bench
