// The arguments of channelstrip render.

#pragma once

#include <optional>
#include <string>
#include <vector>

#include "../render/batch.h"

namespace CLI {
class App;
}

namespace channelstrip::host {

struct RenderArguments {
  std::vector<std::string> files;  // IN... OUT
  StripOptions strip;
  std::optional<std::string> output_type, bits, dither;
  std::optional<unsigned> jobs;
  std::optional<double> loudness;   // LUFS
  std::optional<double> true_peak;  // dBTP
  Existing existing = Existing::kKept;
  bool recursive = false, quiet = false, json = false;
};

// Fills the arguments when `command` is parsed.
void add_render_arguments(CLI::App& command, RenderArguments& arguments);

// What they ask for. Throws std::runtime_error, one line for the user.
Batch batch_of(const RenderArguments& arguments);

}  // namespace channelstrip::host
