// The equaliser's card: its plot over the table of its bands.

#include "tables.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>

namespace channelstrip::view {
namespace {

void place_bands(Layout& layout, Rect table, const Setup& setup) {
  const double em = layout.em;
  const std::array<const char*, 8> names{
      "", "Type", layout.is_small ? "Freq" : "Frequency", "Gain", "Q", "Slope", "Design", "Place"};
  // Widths that the texts take, in em; what is left goes to the gaps.
  const std::array<double, 8> small{1.8, 4.7, 4.6, 4.3, 3.2, 2.6, 3.1, 2.5};
  const std::array<double, 8> wide{2.1, 6.8, 5.2, 4.7, 3.4, 5.0, 4.8, 2.8};
  const auto& widths = layout.is_small ? small : wide;
  const double sum = em * std::accumulate(widths.begin(), widths.end(), 0.0);
  const double gap = (table.width - sum) / static_cast<double>(widths.size() - 1);
  std::array<Rect, 8> columns;
  Rect rest = table;
  for (std::size_t c = 0; c < columns.size(); ++c) {
    columns[c] = rest.cut_left(em * widths[c]);
    rest.cut_left(gap);
  }
  for (std::size_t c = 0; c < columns.size(); ++c) {
    layout.heads[c] = {names[c], {columns[c].x, table.y, columns[c].width, layout.pitch}};
  }
  for (std::size_t b = 0; b < kBands; ++b) {
    const BandParameters& band = parameters().bands[b];
    const BandUse use = use_of(band, setup.values);
    const Row slope = slope_row(band, setup.values);
    const std::array<Row, 8> row{{{band.on, "", ""},
                                  {band.type, "", ""},
                                  {band.frequency, "", ""},
                                  {band.gain, "", "", use.gain},
                                  {band.q, "", "", use.q},
                                  slope,
                                  {band.design, "", ""},
                                  {band.position, "", ""}}};
    for (std::size_t c = 0; c < row.size(); ++c) {
      layout.cells.push_back(
          {.kind = c == 0 ? CellKind::kChip : CellKind::kColumn,
           .section = Section::kEqualiser,
           .box = {columns[c].x - gap / 2, table.y + static_cast<double>(b + 1) * layout.pitch,
                   columns[c].width + gap, layout.pitch},
           .parameter = row[c].parameter,
           .band = b,
           .column = c,
           .is_used = row[c].is_used});
      if (c == 0) {
        Rect& box = layout.cells.back().box;
        box = {columns[c].x, box.y, columns[c].width, box.height};
      }
    }
  }
}

}  // namespace

Row slope_row(const BandParameters& band, const std::vector<double>& values) {
  const BandUse use = use_of(band, values);
  return {use.shelf_slope ? band.shelf_slope : band.slope, "Slope", "Slope",
          use.shelf_slope || use.slope};
}

Rect inner_of(const Layout& layout, const Rect& card) {
  return card.inset(std::round((layout.is_small ? 0.8 : 1.1) * layout.em),
                    std::round(0.7 * layout.em));
}

void place_equaliser(Layout& layout, const Setup& setup) {
  const double em = layout.em;
  Rect card = inner_of(layout, layout.equaliser);
  layout.title = card.cut_top(std::round(1.8 * em));
  Rect table = card.cut_bottom((kRows + 1) * layout.pitch);
  card.cut_bottom(std::round(kBelowPlots * em));
  card.cut_left(std::round(1.9 * em));   // the gains
  card.cut_right(std::round(2.0 * em));  // the levels
  layout.eq.area = card;
  layout.footer = table.cut_bottom(layout.pitch);
  place_bands(layout, table, setup);
}

}  // namespace channelstrip::view
