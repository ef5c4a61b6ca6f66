#include <algorithm>
#include <cmath>

#include "layout.h"

namespace channelstrip::view {

Target target_at(const Layout& layout, const Setup& setup, Point point) {
  // Of handles that overlap, the one whose centre is nearest.
  double nearest = 1.35 * layout.handle_radius;
  Target target;
  for (std::size_t b = 0; b < kBands; ++b) {
    const double distance =
        std::hypot(layout.handles[b].x - point.x, layout.handles[b].y - point.y);
    if (distance <= nearest) {
      nearest = distance;
      target = {Part::kHandle, b};
    }
  }
  if (target.part != Part::kNone) return target;

  if (layout.undo.contains(point)) return {Part::kUndo};
  if (layout.redo.contains(point)) return {Part::kRedo};
  for (std::size_t c = 0; c < layout.cells.size(); ++c) {
    if (layout.cells[c].is_used && layout.cells[c].box.contains(point)) return {Part::kCell, c};
  }
  if (layout.levels.area.contains(point)) {
    const Parameters& p = parameters();
    const std::array<std::array<std::size_t, 2>, 2> thresholds{
        {{p.compressor.on, p.compressor.threshold}, {p.expander.on, p.expander.threshold}}};
    double closest = 0.6 * layout.em;
    for (std::size_t t = 0; t < thresholds.size(); ++t) {
      if (!setup.is_on(thresholds[t][0])) continue;
      const double distance = std::abs(layout.levels.x(setup.values[thresholds[t][1]]) - point.x);
      if (distance <= closest) {
        closest = distance;
        target = {Part::kThreshold, t};
      }
    }
    return target;
  }
  if (layout.eq.area.contains(point)) return {Part::kEqualiser};
  if (layout.input_bars.contains(point) || layout.output_bars.contains(point)) {
    return {Part::kMeters};
  }
  return target;
}

}  // namespace channelstrip::view
