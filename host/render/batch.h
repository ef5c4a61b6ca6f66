// Renders many files, several at a time, each through a strip of its own.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "../system/progress.h"
#include "outputs.h"
#include "render.h"

namespace channelstrip::host {

struct RenderResult {
  RenderFile file;
  std::optional<RenderReport> report;  // none: it failed
  std::string error;                   // one line, why
};

struct Batch {
  std::vector<RenderFile> files;
  StripOptions strip;
  OutputChoice choice = {};
  std::optional<Dither> dither = {};
  std::optional<LoudnessTarget> loudness = {};  // of each file by itself
  Existing existing = Existing::kKept;
  bool makes_folders = false;  // those that the outputs lie in
  unsigned jobs = 1;           // at a time, 1 or more
};

// Renders every file, even if others fail. Results are reported in the order of the files, one at a
// time, each as soon as those before it have been; the line of `progress` is erased before that.
// Throws Interrupted once every job has stopped.
void render_all(const Batch& batch, Progress& progress,
                const std::function<void(const RenderResult&)>& report);

}  // namespace channelstrip::host
