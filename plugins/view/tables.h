// The rows and columns of values in each card.

#pragma once

#include "layout.h"

namespace channelstrip::view {

inline constexpr int kRows = 9;             // below each section's title
inline constexpr double kBelowPlots = 2.2;  // em: an axis, and room above the tables

// A value in a row.
struct Row {
  std::size_t parameter;
  const char *name, *short_name;
  bool is_used = true;
};
// The slope that a band's type has: a shelf's, a pass's, or none.
Row slope_row(const BandParameters& band, const std::vector<double>& values);

// What a card holds within its edges.
Rect inner_of(const Layout& layout, const Rect& card);

// Divide the cards into plots, titles, rows and columns; the equaliser's before the dynamics'.
void place_header(Layout& layout);
void place_meters(Layout& layout, const Setup& setup);
void place_equaliser(Layout& layout, const Setup& setup);
void place_dynamics(Layout& layout, const Setup& setup);

}  // namespace channelstrip::view
