// What a history has shown to be wrong.

#pragma once

#include <stdexcept>

namespace channelstrip::test {

struct Fault : std::runtime_error {
  using runtime_error::runtime_error;
};

inline void demand(bool holds, const char* what) {
  if (!holds) throw Fault(what);
}

}  // namespace channelstrip::test
