// The reference of presets, docs/presets.md.

#pragma once

#include <string>

namespace channelstrip::host {

// Markdown, from the tables of keys and the first comments of the presets in `folder`.
std::string preset_reference(const std::string& folder);

}  // namespace channelstrip::host
