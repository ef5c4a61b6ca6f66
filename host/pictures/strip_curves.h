// What can be drawn of a strip's settings, without any audio.

#pragma once

#include <ChannelStrip/dynamics/dyn_records.h>

#include <optional>
#include <string>
#include <vector>

#include "../run/strip_options.h"
#include "band_filter.h"
#include "burst.h"
#include "chart.h"
#include "control/design/channel_layout.h"
#include "control/design/dynamics.h"
#include "control/preset/preset.h"

namespace channelstrip::host {

struct StripCurves {
  std::string title;  // the preset's name or file
  double sample_rate;
  StripSettings settings;  // in force at the time that was asked for
  std::vector<BandFilter> pre, post;
  std::optional<BandFilter> key_filter;
  Dyn_SCoefsBlock dynamics;
  std::optional<Burst> burst;           // where there are dynamics
  std::optional<ChannelLayout> layout;  // where a format is given
  std::vector<double> changes;          // s, ascending: when settings change
  std::size_t changed;                  // how many of these have passed at the time shown
  std::vector<std::string> remarks;     // the preset's

  double makeup() const { return linear_to_db(static_cast<double>(dynamics.makeupGain)); }  // dB
  bool has_gate() const { return settings.expander && settings.expander->hysteresis; }
};

// Of the settings in force at `time` s. Throws std::runtime_error, one line for the user.
StripCurves strip_curves(const StripOptions& options, double sample_rate, double time = 0);

// "Voice at 48000 Hz" and, if settings change, from when to when those shown apply.
std::string heading_of(const StripCurves& curves);

// When settings change; empty where they don't.
std::string note_of(const StripCurves& curves);

// All charts, from the bands' magnitude to the course of the gain; what isn't set isn't drawn.
std::vector<Chart> charts_of(const StripCurves& curves);

// The same as tables.
std::string curve_text(const StripCurves& curves);

// The parts of charts_of.
std::vector<Chart> filter_charts(const StripCurves& curves);
Chart level_chart(const StripCurves& curves);
std::vector<Chart> burst_charts(const StripCurves& curves);

}  // namespace channelstrip::host
