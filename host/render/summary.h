// What was rendered and what the meters showed.

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "outputs.h"
#include "render.h"

namespace channelstrip::host {

// Lines for people.
std::string summary_text(const RenderFile& file, const RenderReport& report);

// One line for a file among many, one for a loudness that was asked for, and one for each warning.
std::string summary_line(const RenderFile& file, const RenderReport& report);

// What became of many files.
struct Tally {
  std::size_t rendered = 0, failed = 0, with_warnings = 0;
  double seconds = 0;  // of audio
};
std::string tally_line(const Tally& tally);

// The same for programs. Peaks are in dBFS, reductions in dB and positive, each null where it is
// infinite. "loudness" is there if one was asked for: target and integrated in LUFS, true_peak in
// dBTP, gain in dB.
nlohmann::json summary_json(const RenderFile& file, const RenderReport& report);

}  // namespace channelstrip::host
