// A shared library with what this project's must not have: imports, a constructor, writable data.

#include <cmath>

namespace {

struct Counter {
  Counter() { ++count; }
  int count = 1;
};
Counter counter;

}  // namespace

extern "C" float AlgEntry_16_Stem_Mono(float x) {
  return std::sin(x) * static_cast<float>(++counter.count);
}
