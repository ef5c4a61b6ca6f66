// The dynamics' card: static curve and history over the columns of compressor, expander and key.

#include "tables.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace channelstrip::view {
namespace {

void add_rows(Layout& layout, Rect column, Section section, std::span<const Row> rows) {
  for (const Row& row : rows) {
    layout.cells.push_back({.kind = CellKind::kRow,
                            .section = section,
                            .box = column.cut_top(layout.pitch),
                            .parameter = row.parameter,
                            .name = row.name,
                            .short_name = row.short_name,
                            .is_used = row.is_used});
  }
}

void add_title(Layout& layout, Rect box, Section section, std::size_t parameter, const char* name,
               const char* short_name) {
  layout.cells.push_back({.kind = CellKind::kSwitch,
                          .section = section,
                          .box = box,
                          .parameter = parameter,
                          .name = name,
                          .short_name = short_name});
}

}  // namespace

void place_dynamics(Layout& layout, const Setup& setup) {
  const Parameters& p = parameters();
  const double em = layout.em;
  Rect card = inner_of(layout, layout.dynamics);
  Rect tables = card.cut_bottom((kRows + 1) * layout.pitch);
  card.cut_bottom(std::round(kBelowPlots * em));
  card.cut_top(layout.title.height);
  card.cut_left(std::round(1.9 * em));  // the levels
  Rect history = card.cut_bottom(std::round((card.height - 2 * em) * 0.36));
  history.cut_right(std::round(0.2 * em));
  layout.history.area = history;
  card.cut_bottom(std::round(1.9 * em));
  card.cut_right(std::round(0.2 * em));
  layout.levels.area = card;

  // Names have room first, then the gaps.
  const double gap = std::round(std::clamp((tables.width - 26.7 * em) / 2, 0.8 * em, 1.5 * em));
  const double width = (tables.width - 2 * gap) / 3;
  for (Rect& column : layout.columns) {
    column = tables.cut_left(width);
    tables.cut_left(gap);
  }
  const auto title_of = [&](Rect& column) {
    Rect title = column.cut_top(layout.pitch);
    title.cut_right(3.1 * layout.em);
    return title;
  };
  Rect column = layout.columns[0];
  add_title(layout, title_of(column), Section::kCompressor, p.compressor.on, "COMPRESSOR", "COMP");
  const Row compressor[] = {{p.compressor.threshold, "Threshold", "Thresh"},
                            {p.compressor.ratio, "Ratio", "Ratio"},
                            {p.compressor.knee, "Knee", "Knee"},
                            {p.compressor.attack, "Attack", "Attack"},
                            {p.compressor.release, "Release", "Rel"},
                            {p.compressor.range, "Range", "Range"},
                            {p.compressor.makeup, "Makeup", "Gain"},
                            {p.compressor.auto_makeup, "Auto makeup", "Auto"}};
  add_rows(layout, column, Section::kCompressor, compressor);

  column = layout.columns[1];
  add_title(layout, title_of(column), Section::kExpander, p.expander.on,
            setup.is_on(p.expander.gate) ? "GATE" : "EXPANDER",
            setup.is_on(p.expander.gate) ? "GATE" : "EXP");
  const Row expander[] = {
      {p.expander.threshold, "Threshold", "Thresh"},
      {p.expander.gate, "Gate", "Gate"},
      {p.expander.hysteresis, "Hysteresis", "Hyst", setup.is_on(p.expander.gate)},
      {p.expander.ratio, "Ratio", "Ratio"},
      {p.expander.knee, "Knee", "Knee"},
      {p.expander.attack, "Attack", "Attack"},
      {p.expander.hold, "Hold", "Hold"},
      {p.expander.release, "Release", "Rel"},
      {p.expander.range, "Range", "Range"}};
  add_rows(layout, column, Section::kExpander, expander);

  column = layout.columns[2];
  add_title(layout, title_of(column), Section::kKey, p.key.enable, "KEY", "KEY");
  const BandParameters& filter = p.key_filter;
  const bool is_filtered = setup.is_on(filter.on);
  const BandUse use = use_of(filter, setup.values);
  Row slope = slope_row(filter, setup.values);
  slope.is_used = slope.is_used && is_filtered;
  const Row key[] = {{filter.on, "Filter", "Filter"},
                     {filter.type, "Type", "Type", is_filtered},
                     {filter.frequency, "Frequency", "Freq", is_filtered},
                     {filter.gain, "Gain", "Gain", is_filtered && use.gain},
                     {filter.q, "Q", "Q", is_filtered && use.q},
                     slope,
                     {filter.design, "Design", "Design", is_filtered},
                     {p.detector.mode, "Detector", "Detect"},
                     {p.detector.time, "Time", "Time"}};
  add_rows(layout, column, Section::kKey, key);
}

}  // namespace channelstrip::view
