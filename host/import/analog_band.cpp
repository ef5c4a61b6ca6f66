#include "analog_band.h"

#include <cmath>
#include <numbers>

#include "control/design/refuse.h"

namespace channelstrip::host {

double q_of_bandwidth(double octaves) {
  if (!(octaves > 0)) refuse("the bandwidth is not above 0");
  return 1 / (2 * std::sinh(std::numbers::ln2 / 2 * octaves));
}

// 1 / Q^2 = (A + 1 / A) (1 / S - 1) + 2, R. Bristow-Johnson's "Cookbook formulae for audio EQ
// biquad filter coefficients".
double slope_of_q(double q, double gain) {
  const double a = std::pow(10, gain / 40);
  return 1 / (1 + (1 / (q * q) - 2) / (a + 1 / a));
}

double shelf_midpoint(BandType shelf, double corner, double gain, double slope) {
  const double factor = std::pow(10, std::abs(gain) / (80 * slope));
  return shelf == BandType::kLowShelf ? corner * factor : corner / factor;
}

}  // namespace channelstrip::host
