#include "duration.h"

#include <fmt/format.h>

#include <cmath>

namespace channelstrip::host {

std::string duration(double seconds) {
  const double rounded = std::round(1000 * seconds) / 1000;  // else it may read 60.000 s
  const double minutes = std::floor(rounded / 60);
  return minutes < 1 ? fmt::format("{:.3f} s", rounded)
                     : fmt::format("{:.0f} min {:06.3f} s", minutes, rounded - 60 * minutes);
}

}  // namespace channelstrip::host
