// Renders an audio file through a strip.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "../audio/audio_format.h"
#include "../audio/dither.h"
#include "../audio/output_format.h"
#include "../loudness/normalisation.h"
#include "../run/strip_options.h"
#include "../system/interrupt.h"
#include "../system/output_file.h"
#include "control/design/channel_layout.h"
#include "control/strip/strip_stream.h"

namespace channelstrip::host {

struct RenderOptions {
  std::string input;
  std::string output;
  StripOptions strip;
  OutputChoice choice = {};
  std::optional<Dither> dither = {};            // none: as is usual for the output's sample type
  std::optional<LoudnessTarget> loudness = {};  // none: the level is what the settings give
  Existing existing = Existing::kKept;
  // Called now and then with the seconds of audio rendered since the last time, and the part of the
  // whole that is done, below 0 if that isn't known.
  std::function<void(double seconds, double part)> on_progress = {};
};

struct RenderReport {
  std::string preset_name;
  AudioFormat format;  // of the input
  AudioFormat output_format;
  ChannelLayout layout;
  sf_count_t frames = 0;
  StripMeters meters;  // the output's behind all gains
  std::optional<Normalisation> normalisation = {};
  long long clipped = 0;               // samples
  std::vector<std::string> warnings;   // clipping among them
  std::vector<std::string> cut_short;  // StripRun::cut_short()
};

// With a target loudness the input is read twice: what the strip makes of it is measured, then
// written with the gain that takes it there. Either the whole output stands in its place or nothing
// has changed. Throws std::runtime_error, one line for the user, or Interrupted. May run in several
// threads at once.
RenderReport render(const RenderOptions& options);

}  // namespace channelstrip::host
