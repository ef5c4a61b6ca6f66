// A render's report as a page.

#pragma once

#include <string>

#include "render_analysis.h"

namespace channelstrip::host {

// One HTML document that needs nothing else: no script, no picture, no font of its own. The same
// analysis gives the same bytes.
std::string report_page(const RenderAnalysis& analysis);

}  // namespace channelstrip::host
