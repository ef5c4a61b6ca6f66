// What is measured.

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
  Variant variant = Variant::kUsual;
  int bands = 8;        // that run, the first four before the dynamics
  int link_groups = 8;  // in use, as far as the format has them

  // "7.1 x16 128 gliding"
  std::string name() const;
};

inline constexpr Workload kWorkloads[] = {
    {"Mono", 1, 64},
    {"Mono", 1, 512},
    {"Stereo", 1, 64},
    {"Stereo", 1, 512},
    {"LCR", 1, 128},
    {"Quad", 1, 128},
    {"5.0", 1, 128},
    {"5.1", 1, 512},
    {"6.1", 1, 512},
    {"7.1", 1, 512},
    {"Mono", 64, 64},
    {"Mono", 64, 256},
    {"Stereo", 32, 64},
    {"Stereo", 32, 256},
    {"5.1", 16, 128},
    {"7.1", 16, 128},
    {"Mono", 1, 512, Variant::kGliding},
    {"Stereo", 1, 512, Variant::kGliding},
    {"7.1", 1, 512, Variant::kGliding},
    {"Mono", 64, 128, Variant::kGliding},
    {"Mono", 1, 512, Variant::kAllBefore},
    {"7.1", 1, 512, Variant::kAllBefore},
    {"Stereo", 1, 512, Variant::kInPlace},
};

}  // namespace channelstrip::bench
