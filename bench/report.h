// The figures, for people and for programs.

#pragma once

#include <string>
#include <vector>

#include "workloads.h"

namespace channelstrip::bench {

struct Row {
  struct Rival {
    bool same_bits = true;            // as the library
    std::vector<double> ratios = {};  // how many times as long as the library it took in each turn
  };

  Workload workload;
  std::vector<double> nanoseconds = {};  // the library's per frame and strip, in each turn
  std::vector<Rival> rivals = {};
};

struct Report {
  std::string library;  // path
  std::string against;  // what the library is compared with, in a sentence
  std::vector<std::string> rivals;
  std::vector<Row> rows;  // at least one, all of the same number of turns
};

std::string as_table(const Report& report);
std::string as_json(const Report& report);

}  // namespace channelstrip::bench
