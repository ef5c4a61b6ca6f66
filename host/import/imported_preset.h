// A preset made of another program's filters.

#pragma once

#include <string>
#include <string_view>

#include "filter_list.h"

namespace channelstrip::host {

// Moves to list.left_out what no preset can hold: bands from the ninth on, values outside a key's
// range, preamps that add up to more than a makeup gain. left_out is then in the order of lines.
void fit_to_preset(FilterList& list);

// The TOML text, from which parse_preset() reads the bands and the preamps' sum. Every table says
// which line of `file` it comes from, and the end lists what was left out. fit_to_preset() must
// have been called for `list`.
std::string preset_text(const FilterList& list, std::string_view name, std::string_view file);

}  // namespace channelstrip::host
