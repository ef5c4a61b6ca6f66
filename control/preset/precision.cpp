#include "precision.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

#include "../design/possible.h"
#include "../design/refusal_words.h"

namespace channelstrip::host {

std::vector<JudgedBand> judge_bands(const Preset& preset, double sample_rate) {
  std::vector<JudgedBand> judged;
  for (const Preset::Band& band : preset.bands) {
    // A band that no change touches is listed once more with every change.
    const bool known = std::ranges::any_of(judged, [&](const JudgedBand& other) {
      return other.band.place.where == band.place.where && other.band.settings == band.settings;
    });
    if (known) continue;
    const auto refusal = refusal_of(band.settings, sample_rate);
    if (refusal) fail(band.place, words_of(*refusal));
    judged.push_back({band, band_accuracy(band.settings, sample_rate)});
  }
  return judged;
}

void remark_on_precision(Preset& preset, double sample_rate) {
  for (const JudgedBand& judged : judge_bands(preset, sample_rate)) {
    if (!judged.is_off() && !judged.is_noisy()) continue;
    std::string what;
    if (judged.is_off()) {
      what = fmt::format("is off by {:.1f} dB at {:.4g} Hz", judged.accuracy.deviation,
                         judged.accuracy.frequency);
    }
    if (judged.is_noisy()) {
      what += fmt::format("{}adds noise of about {:.0f} dBFS", what.empty() ? "" : " and ",
                          judged.accuracy.noise);
    }
    preset.remarks.push_back(
        message(judged.band.place,
                fmt::format("{} in single precision at {} Hz; a lower sample rate suits it better",
                            what, sample_rate)));
  }
}

}  // namespace channelstrip::host
