// A render's report as a page.

#pragma once

#include <string>

#include "render_analysis.h"

namespace channelstrip::host {

// One HTML document that needs nothing else: no script, no picture, no font of its own. The same
// analysis gives the same bytes.
std::string report_page(const RenderAnalysis& analysis);

// The parts of the page that say something about the render, as markup.

// Whether the file is what the settings give.
std::string verdict(const RenderAnalysis& analysis);

// The figures that are looked at first.
std::string at_a_glance(const RenderAnalysis& analysis, const Loudness& before,
                        const Loudness& after);

// Loudness and peaks, before and after.
std::string level_section(const RenderAnalysis& analysis, const Loudness& before,
                          const Loudness& after);

// The settings as the audio begins, and what each later change changes.
std::string settings_section(const Preset& preset);

}  // namespace channelstrip::host
