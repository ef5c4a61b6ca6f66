// A workload that the library and its rivals process in turns.

#pragma once

#include <control/library/stem_format.h>

#include <functional>
#include <string>
#include <vector>

#include "console.h"
#include "report.h"

namespace channelstrip::bench {

// Something that processes strips as the library does.
struct Rival {
  std::string name;
  std::function<AlgEntry_16_Stem*(const host::StemFormat&)> entry_point;
};

class Contest {
 public:
  Contest(const Workload& workload, const Rival& library, const std::vector<Rival>& rivals);

  // Compares results after every call, bit for bit; the row says whose differ from the library's.
  void compare();

  void take_turns(unsigned layout, int turns);

  const Row& row() const { return row_; }

 private:
  std::vector<AlgEntry_16_Stem*> entries_;  // the library's, then those of the rivals
  Row row_;
};

}  // namespace channelstrip::bench
