// The figures, for people and for programs.

#pragma once

#include <string>
#include <vector>

#include "workloads.h"

namespace channelstrip::bench {

struct Row {
  Workload workload;
  double nanoseconds = 0;  // the library's per frame and strip
  // How many times as long the others take: medians of the turns' ratios.
  double ratio = 0;            // the tests' model
  double ratio_to_memory = 0;  // the library's route for instances that may not go in lanes
};

struct Report {
  std::string library;  // path
  int turns;
  std::vector<Row> rows;
};

std::string as_table(const Report& report);
std::string as_json(const Report& report);

}  // namespace channelstrip::bench
