// What any shared library may hold and this project's must not: imports, a constructor, data.

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
