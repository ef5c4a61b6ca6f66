#include "left_out.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace channelstrip::host {
namespace {

// Takes the band's place, so that the others stay where they are when settings change.
void make_neutral(BandSettings& band, double sample_rate) {
  band = {.type = BandType::kPeak, .frequency = sample_rate / 4, .gain = 0};
}

}  // namespace

void leave_out_bands_above(Preset& preset, double sample_rate) {
  const auto is_above = [&](const BandSettings& band) { return band.frequency >= sample_rate / 2; };
  const auto leave_out = [&](StripSettings& settings) {
    for (auto* bands : {&settings.pre, &settings.post}) {
      for (BandSettings& band : *bands) {
        if (is_above(band)) make_neutral(band, sample_rate);
      }
    }
    if (settings.key_filter && is_above(*settings.key_filter)) {
      make_neutral(*settings.key_filter, sample_rate);
    }
  };
  leave_out(preset.settings);
  for (Preset::Change& change : preset.changes) leave_out(change.settings);

  std::erase_if(preset.bands, [&](const Preset::Band& band) {
    if (!is_above(band.settings)) return false;
    std::string line =
        message(band.place, fmt::format("left out, as its frequency, {} Hz, is not below half "
                                        "the sample rate {} Hz",
                                        band.settings.frequency, sample_rate));
    // A band that no change touches is listed once more with every change.
    std::vector<std::string>& lines = preset.remarks;
    if (std::ranges::find(lines, line) == lines.end()) lines.push_back(std::move(line));
    return true;
  });
}

}  // namespace channelstrip::host
