#include "band_keys.h"

#include <fmt/format.h>

#include "../design/prototype.h"

namespace channelstrip::host {
namespace {

std::string name_of(const BandSettings& band) {
  const std::string_view name = kBandTypes[static_cast<std::size_t>(band.type)];
  return fmt::format("{} {}", name.starts_with('a') ? "an" : "a", name);
}

std::string none(const BandSettings& band, std::string_view key) {
  return fmt::format("{} has no {}", name_of(band), key);
}

}  // namespace

std::string to_gain(const EqBand& band) {
  return uses_gain(band) ? "" : none(band, "gain");
}

std::string to_q(const EqBand& band) {
  if (uses_q(band)) return "";
  if (uses_shelf_slope(band)) return "the band has a shelf_slope, which takes q's place";
  if (!uses_slope(band)) return none(band, "q");
  return fmt::format("{} of {} dB/oct is a Butterworth filter, which has no q", name_of(band),
                     band.slope);
}

std::string to_shelf_slope(const EqBand& band) {
  const bool is_shelf = band.type == BandType::kLowShelf || band.type == BandType::kHighShelf;
  return is_shelf ? "" : none(band, "shelf_slope");
}

std::string to_slope(const EqBand& band) {
  return uses_slope(band) ? "" : none(band, "slope");
}

}  // namespace channelstrip::host
