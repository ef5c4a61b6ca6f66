#include "analog_band.h"

#include <cmath>
#include <numbers>

#include "refuse.h"

namespace channelstrip::host {

double q_of_bandwidth(double octaves) {
  if (!(octaves > 0)) refuse("the bandwidth is not above 0");
  return 1 / (2 * std::sinh(std::numbers::ln2 / 2 * octaves));
}

double shelf_midpoint(BandType shelf, double corner, double gain, double slope) {
  const double factor = std::pow(10, std::abs(gain) / (80 * slope));
  return shelf == BandType::kLowShelf ? corner * factor : corner / factor;
}

}  // namespace channelstrip::host
