// Where everything stands: a pure function of size and settings, for drawing and pointer alike.

#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "geometry.h"
#include "model.h"
#include "plots.h"

namespace channelstrip::view {

inline constexpr Size kLeastSize{700, 420}, kUsualSize{1200, 700};

enum class Section { kStrip, kEqualiser, kCompressor, kExpander, kKey };

enum class CellKind {
  kRow,      // a name at the left, its value at the right
  kInline,   // a name and its value beside it, both at the right
  kColumn,   // a value in a table, under its column's head
  kStacked,  // a name, and its value below
  kSwitch,   // a section's title, which a click switches
  kChip,     // a number that a click switches
  kPill      // the bypass
};

// A value that can be changed.
struct Cell {
  CellKind kind;
  Section section;
  Rect box;
  std::size_t parameter;
  const char *name = "", *short_name = "";  // the short one where the other doesn't fit
  std::size_t band = kBands, column = 0;    // in the equaliser's table
  bool is_used = true;                      // false: shown faintly, another value has its place
};

struct ColumnHead {
  const char* name;
  Rect box;
};

struct Layout {
  Size size;
  double em;     // height of the usual type
  double pitch;  // from row to row
  bool is_small;

  Rect header, title;
  Rect equaliser, dynamics, input, output;  // cards
  EqPlot eq;
  LevelPlot levels;
  HistoryPlot history;
  Rect input_bars, output_bars;  // of all channels, without the names below them
  int name_rows;                 // the names of neighbours stand in so many rows
  std::array<Rect, 3> columns;   // compressor, expander, key
  std::array<ColumnHead, 8> heads;
  Rect footer;  // of the equaliser's table: a line of text
  Rect undo, redo;
  std::vector<Cell> cells;
  std::array<Point, kBands> handles;
  double handle_radius;

  std::size_t channels;
  // One channel's bar within all.
  Rect bar(const Rect& bars, std::size_t channel) const;
};

Layout layout_of(Size size, const Setup& setup);

// How far up a handle stands in its plot, in parts of the band's gain, so that it lies on the
// band's curve: a shelf is at half its gain there.
double handle_share(BandType type);

// What lies under a point.
Target target_at(const Layout& layout, const Setup& setup, Point point);

}  // namespace channelstrip::view
