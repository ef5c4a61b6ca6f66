// A band as a strip filters with it.

#pragma once

#include <span>
#include <string>
#include <vector>

#include "../design/band.h"
#include "../design/settings.h"

namespace channelstrip::host {

struct BandFilter {
  BandSettings settings;
  std::vector<Section> sections;  // in single precision, as the library gets them
};

// Throws std::invalid_argument, naming the setting.
BandFilter design_filter(const BandSettings& band, double sample_rate);

// Of the outermost pole; below 1, the nearer to it the longer the band rings.
double pole_radius(const BandFilter& band);

// Of the bands in a row, at each of `frequencies` in Hz.
std::vector<double> magnitude_db(std::span<const BandFilter> bands,
                                 std::span<const double> frequencies, double sample_rate);

// Likewise, in degrees and continuous over frequency, which a sum of wrapped angles isn't.
std::vector<double> phase_degrees(std::span<const BandFilter> bands,
                                  std::span<const double> frequencies, double sample_rate);

// From `low` to `high` in even steps of a logarithmic axis, with all that narrow bands need
// besides.
std::vector<double> plotted_frequencies(std::span<const BandFilter> bands, double low, double high);

// "high shelf", "peak" ... as written in texts.
std::string_view type_name(BandType type);

// "peak 300 Hz -2.5 dB", short enough for a legend.
std::string describe(const BandSettings& band);

}  // namespace channelstrip::host
