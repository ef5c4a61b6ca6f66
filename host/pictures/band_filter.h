// A band's settings with the filter that the library makes of them.

#pragma once

#include <span>
#include <string>
#include <vector>

#include "control/design/band.h"
#include "control/design/settings.h"

namespace channelstrip::host {

struct BandFilter {
  BandSettings settings;
  Sections sections;  // in single precision, as the library gets them
};

// The band must be possible, see control/design/possible.h.
BandFilter design_filter(const BandSettings& band, double sample_rate);

// The radius of the outermost pole, below 1: the closer to 1, the longer the band rings.
double pole_radius(const BandFilter& band);

// The magnitude of the bands in series at each of `frequencies`, in Hz.
std::vector<double> magnitude_db(std::span<const BandFilter> bands,
                                 std::span<const double> frequencies, double sample_rate);

// Likewise the phase in degrees, unwrapped: continuous over frequency.
std::vector<double> phase_degrees(std::span<const BandFilter> bands,
                                  std::span<const double> frequencies, double sample_rate);

// Frequencies from `low` to `high` in even steps of a logarithmic axis, and more of them around
// narrow bands.
std::vector<double> plotted_frequencies(std::span<const BandFilter> bands, double low, double high);

// "high shelf", "peak" ... as written in texts.
std::string_view type_name(BandType type);

// "peak 300 Hz -2.5 dB", short enough for a legend.
std::string describe(const BandSettings& band);

}  // namespace channelstrip::host
