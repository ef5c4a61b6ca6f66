#include "band.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "bilinear.h"
#include "matched.h"
#include "require.h"
#include "single_precision.h"

namespace channelstrip::host {
namespace {

// The settings that the band's coefficients come from.
std::string described(const BandSettings& band) {
  std::vector<std::string> settings{fmt::format("frequency {} Hz", band.frequency)};
  if (uses_q(band)) settings.push_back(fmt::format("q {}", band.q));
  if (uses_shelf_slope(band)) settings.push_back(fmt::format("shelf_slope {}", *band.shelf_slope));
  if (uses_gain(band)) settings.push_back(fmt::format("gain {} dB", band.gain));
  if (uses_slope(band)) settings.push_back(fmt::format("slope {} dB/oct", band.slope));
  const std::string last = settings.back();
  settings.pop_back();
  return fmt::format("{} and {}", fmt::join(settings, ", "), last);
}

}  // namespace

Sections design_band(const BandSettings& band, double sample_rate) {
  require(std::isfinite(sample_rate), "sample rate", sample_rate, "Hz", "finite");
  require(band.frequency > 0, "frequency", band.frequency, "Hz", "above 0 Hz");
  require(band.frequency < sample_rate / 2, "frequency", band.frequency, "Hz",
          "below half the sample rate {} Hz", sample_rate);

  const double omega = 2 * std::numbers::pi * band.frequency / sample_rate;
  Sections sections;
  for (const AnalogSection& analog : prototype(band)) {
    sections.push_back(band.design == BandDesign::kMatched ? matched(band.type, analog, omega)
                                                           : bilinear(analog, omega));
  }
  return sections;
}

Sections design_stored_band(const BandSettings& band, double sample_rate) {
  const Sections sections = fitted_to_single_precision(design_band(band, sample_rate));
  const auto too_low = [&] {
    return fmt::format("{} leave no stable filter in single precision at {} Hz: ", described(band),
                       sample_rate);
  };
  for (const Section& section : sections) naming(too_low, [&] { require_stable(section); });
  return sections;
}

}  // namespace channelstrip::host
