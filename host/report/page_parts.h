// The parts of a report's page that say something of the render, as markup.

#pragma once

#include <string>

#include "render_analysis.h"

namespace channelstrip::host {

// Whether the file is what the settings give.
std::string verdict(const RenderAnalysis& analysis);

// The figures that are looked at first.
std::string at_a_glance(const RenderAnalysis& analysis, const Loudness& before,
                        const Loudness& after);

// Loudness and peaks, before and after.
std::string level_section(const RenderAnalysis& analysis, const Loudness& before,
                          const Loudness& after);

// The settings as the audio begins and what each change of them changes.
std::string settings_section(const Preset& preset);

}  // namespace channelstrip::host
