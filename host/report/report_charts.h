// A render in pictures.

#pragma once

#include "../pictures/chart.h"
#include "part.h"
#include "render_analysis.h"

namespace channelstrip::host {

// Before and after, on one scale for all parts.
Chart waveform_chart(const RenderAnalysis& analysis, std::size_t part);
Chart spectrum_chart(const RenderAnalysis& analysis, std::size_t part);

// The gain of every link group over time, changes of settings marked.
Chart reduction_chart(const RenderAnalysis& analysis);

}  // namespace channelstrip::host
