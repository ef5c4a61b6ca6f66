#include "band.h"

#include <numbers>

#include "bilinear.h"
#include "matched.h"
#include "single_precision.h"

namespace channelstrip::host {

Sections design_band(const BandSettings& band, double sample_rate) {
  const double omega = 2 * std::numbers::pi * band.frequency / sample_rate;
  Sections sections;
  for (const AnalogSection& analog : prototype(band)) {
    sections.push_back(band.design == BandDesign::kMatched ? matched(band.type, analog, omega)
                                                           : bilinear(analog, omega));
  }
  return sections;
}

Sections design_stored_band(const BandSettings& band, double sample_rate) {
  return fitted_to_single_precision(design_band(band, sample_rate));
}

}  // namespace channelstrip::host
