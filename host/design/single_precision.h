// Sections of floats, as the library takes them, that come close to designed ones.
//
// At low frequencies a section's poles and zeros lie next to z = 1, and its response there follows
// from the sums b0 + b1 + b2 and 1 - a1 - a2: small differences of large coefficients. Next to 1
// and 2 a float's steps are 2^-24 and 2^-23, so the frequency w of a pole, in radians per sample,
// can only be chosen such that w^2 is a multiple of about 2^-24. docs/numerics.md has a table of
// what this leaves.

#pragma once

#include <span>

#include "section.h"

namespace channelstrip::host {

// Rounds each coefficient to a float next to it. a2 and b2 are rounded last, so that the two sums
// above compensate for the rounding of the others. An all-pass keeps its mirrored numerator.
Section rounded_section(const Section& section);

// Makes the sections of a band, eight at most, sections of floats whose responses together are as
// close to the exact one as a search finds. Around each denominator it tries the pairs of floats
// next to it, gives each pair the numerator that suits it best, and lets every section make up for
// what is left of the others' errors. What lies 60 dB below the band's maximum counts as silence.
// Where rounding alone is good to 0.005 dB, it stays at that. An all-pass and a section of first
// order are only rounded.
//
// Bounded work without allocation: up to 45 pairs for each section, twice.
void fit_to_single_precision(std::span<Section> band);

}  // namespace channelstrip::host
