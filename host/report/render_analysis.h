// What a render did to a file.

#pragma once

#include <functional>
#include <string>
#include <vector>

#include "../run/strip_options.h"
#include "comparison.h"
#include "control/preset/preset.h"
#include "reduction_track.h"
#include "signal_analysis.h"

namespace channelstrip::host {

struct RenderAnalysis {
  struct File {
    std::string path;
    AudioFormat format;
    SignalAnalysis signal;
  };
  struct Group {
    Part part;
    ReductionTrack reduction = ReductionTrack();
  };

  Preset preset;
  ChannelLayout layout;
  sf_count_t frames = 0;
  std::vector<Part> parts;
  File before, after;
  std::vector<Group> groups;       // as the dynamics link them in the beginning
  float compressor_reduction = 0;  // 1 - least factor
  float expander_reduction = 0;    // 1 - least factor
  Comparison comparison;           // of what the settings give with `after`
  std::vector<std::string> remarks = {}, cut_short = {};  // StripRun's
};

// One pass over both files. Memory doesn't grow with them, except for the loudness meters, which
// keep 32 bytes per 0.1 s.
// Throws std::runtime_error, one line for the user, also when `output` differs from `input` in
// rate, channels or length, or Interrupted. Tells now and then how many more seconds of audio are
// done, and which part of the whole (below 0: not known).
using OnProgress = std::function<void(double seconds, double part)>;
RenderAnalysis analyse_render(const std::string& input, const std::string& output,
                              const StripOptions& strip, const OnProgress& on_progress);

}  // namespace channelstrip::host
