// The three conversion tables, computed from their rule when the program starts.

#pragma once

#include <array>
#include <cmath>
#include <cstddef>

namespace channelstrip::model {

struct Tables {
  std::array<float, 513> log2;       // log2(1 + i/512)
  std::array<float, 512> pow2_high;  // 2^(i/512)
  std::array<float, 512> pow2_low;   // 2^((i + 1/2)/2^18)
};

// The single nearest 1/log10(2).
inline constexpr float kOctavesPerDecade = 0x1.a934fp+1F;

inline Tables make_tables() {
  Tables tables{};
  for (std::size_t i = 0; i < 513; ++i) {
    // In two roundings, the decimal logarithm's and the product's.
    tables.log2[i] = static_cast<float>(std::log10(1.0 + static_cast<double>(i) / 512.0));
    tables.log2[i] *= kOctavesPerDecade;
  }
  // The two entries that stand one unit in the last place above the rule.
  tables.log2[37] = std::nextafter(tables.log2[37], 1.0F);
  tables.log2[39] = std::nextafter(tables.log2[39], 1.0F);

  for (std::size_t i = 0; i < 512; ++i) {
    const double step = static_cast<double>(i);
    tables.pow2_high[i] = static_cast<float>(std::exp2(step / 512.0));
    tables.pow2_low[i] = static_cast<float>(std::exp2((step + 0.5) / 262144.0));
  }
  return tables;
}

inline const Tables kTables = make_tables();

}  // namespace channelstrip::model
