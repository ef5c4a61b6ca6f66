// Settings in the words of a preset.

#pragma once

#include <vector>

#include "control/design/settings.h"
#include "html.h"

namespace channelstrip::host {

std::vector<HtmlTable> settings_tables(const StripSettings& settings);

}  // namespace channelstrip::host
