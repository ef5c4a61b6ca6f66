// Sections of floats, as the library takes them, that come close to designed ones.
//
// At low frequencies a section's poles and zeros lie next to z = 1, and its response there follows
// from the sums b0 + b1 + b2 and 1 - a1 - a2: small differences of large coefficients. Next to 1
// and 2 a float's steps are 2^-24 and 2^-23, so the frequency w of a pole, in radians per sample,
// can only be chosen such that w^2 is a multiple of about 2^-24. docs/numerics.md has a table of
// what this leaves.

#pragma once

#include <cstddef>

#include "magnitude_fit.h"
#include "section.h"

namespace channelstrip::host {

// Rounds each coefficient to a float next to it. a2 and b2 are rounded last, so that the two sums
// above compensate for the rounding of the others. An all-pass keeps its mirrored numerator.
Section rounded_section(const Section& section);

// Finds, for the sections of a band, eight at most, sections of floats whose responses together are
// as close to the exact one as a search finds. Around each denominator it tries the pairs of floats
// next to it, gives each pair the numerator that suits it best, and lets every section make up for
// what is left of the others' errors. What lies 60 dB below the band's maximum counts as silence.
// Where rounding alone is good to 0.005 dB, it stays at that. An all-pass and a section of first
// order are only rounded. The sections found are stable if and only if the rounded ones are.
//
// The search can be done in steps, between which an audio thread does other work: up to 45 pairs
// for each section, twice, a few of them in a step. Nothing allocates.
class PrecisionSearch {
 public:
  PrecisionSearch() = default;

  // Begins with the rounded sections.
  explicit PrecisionSearch(const Sections& exact);

  bool is_done() const { return state_ == State::kDone; }

  // A microsecond or two of work; nothing once the search is done.
  void step();

  // The best sections that are known.
  const Sections& sections() const { return band_; }

 private:
  enum class State { kPoints, kSection, kPairs, kDone };

  void find_points();
  void begin_section();
  void end_section();
  void try_pair();

  State state_ = State::kDone;
  Sections exact_, band_;
  FitPoints points_;
  FitValues wanted_ = {}, scale_ = {}, others_ = {};
  int round_ = 0;          // 0 and 1
  std::size_t at_ = 0;     // the section in turn, the last first
  int pair_ = 0;           // next of its denominators
  Section best_;           // for the section in turn
  double best_error_ = 0;  // of the band's squared magnitude, relative
};

// The sections after the whole search.
Sections fitted_to_single_precision(const Sections& exact);

}  // namespace channelstrip::host
