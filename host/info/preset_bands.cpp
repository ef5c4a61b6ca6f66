#include "preset_bands.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "../text/wording.h"
#include "control/preset/band_keys.h"

namespace channelstrip::host {
namespace {

std::string_view type_of(const BandSettings& band) {
  return kBandTypes[static_cast<std::size_t>(band.type)];
}

}  // namespace

std::string bands_text(const std::vector<JudgedBand>& bands, double sample_rate) {
  std::string text = fmt::format(
      "In single precision at {} Hz; noise beside white noise at {:.0f} dBFS\n\n"
      "{:<12}{:<12}{:>10}{:>16}{:>12}  where\n",
      sample_rate, kNoiseInput, "band", "type", "frequency", "off by", "noise");
  for (const JudgedBand& judged : bands) {
    const auto& [place, band, key_filter] = judged.band;
    text += fmt::format("{:<12}{:<12}{:>7.6g} Hz{:>13.3f} dB{:>7.0f} dBFS  {}{}\n",
                        place.key.empty() ? "--set" : one_line(place.key), type_of(band),
                        band.frequency, judged.accuracy.deviation, judged.accuracy.noise,
                        one_line(place.where), judged.is_off() || judged.is_noisy() ? "  !" : "");
  }
  return text;
}

std::string bands_json(const std::vector<JudgedBand>& bands, double sample_rate) {
  using Json = nlohmann::ordered_json;
  Json result{{"sample_rate", sample_rate}, {"bands", Json::array()}};
  for (const auto& [band, accuracy] : bands) {
    result["bands"].push_back({{"key", band.place.key},
                               {"where", band.place.where},
                               {"type", type_of(band.settings)},
                               {"frequency", band.settings.frequency},
                               {"deviation_db", accuracy.deviation},
                               {"deviation_frequency", accuracy.frequency},
                               {"noise_dbfs", accuracy.noise}});
  }
  return result.dump(2, ' ', false, Json::error_handler_t::replace) + '\n';
}

}  // namespace channelstrip::host
