// What was rendered and what the meters showed.

#pragma once

#include <nlohmann/json_fwd.hpp>
#include <string>

#include "outputs.h"
#include "render.h"

namespace channelstrip::host {

// Lines for people.
std::string summary_text(const RenderFile& file, const RenderReport& report);

// The same for programs. Peaks are in dBFS, reductions in dB and positive, each null where it is
// infinite.
nlohmann::json summary_json(const RenderFile& file, const RenderReport& report);

}  // namespace channelstrip::host
