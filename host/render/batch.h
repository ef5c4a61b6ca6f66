// Many files through strips of their own, several at a time.

#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "outputs.h"
#include "progress.h"
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
  unsigned jobs = 1;  // at a time, 1 or more
};

// Renders every file, whatever becomes of the others. Results are reported in the order of the
// files, one at a time, each as soon as those before it are; `progress` is erased before. Throws
// Interrupted once every job has stopped.
void render_all(const Batch& batch, Progress& progress,
                const std::function<void(const RenderResult&)>& report);

}  // namespace channelstrip::host
