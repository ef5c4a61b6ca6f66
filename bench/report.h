// The figures, for people and for programs.

#pragma once

#include <string>
#include <vector>

#include "workloads.h"

namespace channelstrip::bench {

struct Row {
  Workload workload;
  double library_ns = 0, plain_ns = 0;  // per frame and strip
  double ratio = 0;                     // median of the turns' ratios, plain to library
};

struct Report {
  std::string library;  // path
  int turns;
  std::vector<Row> rows;
};

std::string as_table(const Report& report);
std::string as_json(const Report& report);

}  // namespace channelstrip::bench
