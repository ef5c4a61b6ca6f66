// What is measured, and how many times faster than plain loops the library is meant to be.

#pragma once

#include <string>
#include <string_view>

namespace channelstrip::bench {

enum class Variant {
  kUsual,      // four bands before the dynamics and four after, coefficients at their targets
  kGliding,    // targets that change between calls, so that the glide never comes to rest
  kAllBefore,  // all eight bands before the dynamics
  kInPlace,    // outputs are inputs
};

struct Workload {
  std::string_view format;
  int strips;   // processed by one call
  int samples;  // per call
  Variant variant;
  double target;        // times faster; 0: none, and the row is left out of the mean
  int bands = 8;        // that run, the first four before the dynamics
  int link_groups = 8;  // in use, as far as the format has them

  // "7.1 x16, gliding"
  std::string name() const;
};

inline constexpr Workload kWorkloads[] = {
    {"Mono", 1, 512, Variant::kUsual, 3.5},   {"Stereo", 1, 512, Variant::kUsual, 3.5},
    {"LCR", 1, 512, Variant::kUsual, 3.5},    {"Quad", 1, 512, Variant::kUsual, 3.5},
    {"5.0", 1, 512, Variant::kUsual, 4.5},    {"5.1", 1, 512, Variant::kUsual, 4.5},
    {"6.1", 1, 512, Variant::kUsual, 6},      {"7.1", 1, 512, Variant::kUsual, 6},
    {"Mono", 1, 512, Variant::kGliding, 2.5}, {"Stereo", 1, 512, Variant::kGliding, 2.5},
    {"7.1", 1, 512, Variant::kGliding, 4},    {"Mono", 1, 64, Variant::kUsual, 2.5},
    {"Stereo", 1, 64, Variant::kUsual, 2.5},  {"7.1", 1, 64, Variant::kUsual, 5},
    {"Mono", 64, 128, Variant::kUsual, 9},    {"Stereo", 32, 128, Variant::kUsual, 8},
    {"5.1", 16, 128, Variant::kUsual, 5},     {"7.1", 16, 128, Variant::kUsual, 6.5},
    {"Mono", 64, 128, Variant::kGliding, 4},  {"Mono", 1, 512, Variant::kAllBefore, 0},
    {"7.1", 1, 512, Variant::kAllBefore, 0},  {"Stereo", 1, 512, Variant::kInPlace, 0},
};

// Geometric mean over all rows that have a target; with AVX-512, more is expected.
#if defined(__AVX512F__)
inline constexpr double kMeanTarget = 5.0;
#else
inline constexpr double kMeanTarget = 4.2;
#endif
inline constexpr double kLeastTarget = 1.8;

}  // namespace channelstrip::bench
