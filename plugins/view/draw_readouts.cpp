// What each section does now, as a number and a bar in its title.

#include <algorithm>
#include <cmath>

#include "parts.h"
#include "style.h"

namespace channelstrip::view {
namespace {

constexpr double kFullReduction = -24, kLowestKey = -60;  // dB, of the bars

const Cell& cell_of(const Layout& layout, std::size_t parameter) {
  return *std::ranges::find(layout.cells, parameter, &Cell::parameter);
}

void draw_track(Canvas& canvas, const Layout& layout, std::size_t column, double part,
                bool from_left, Colour colour) {
  const Rect& whole = layout.columns[column];
  const double height = std::max(2.0, std::round(layout.pitch - 1.5 * layout.em));
  const Rect track{whole.x, whole.y + layout.pitch - height, whole.width, height};
  canvas.fill(track, kField);
  const double width = track.width * std::clamp(part, 0.0, 1.0);
  canvas.fill({from_left ? track.x : track.right() - width, track.y, width, height}, colour);
}

void draw_number(Canvas& canvas, const Layout& layout, std::size_t column, const std::string& text,
                 Colour colour) {
  const Rect& whole = layout.columns[column];
  const Rect title{whole.x, whole.y, whole.width, layout.pitch};
  const Type type{
      .size = layout.em, .weight = Weight::kSemiBold, .colour = colour, .align = Align::kRight};
  canvas.text({title.right(), baseline_of(title, type.size) - 1}, text, type);
}

// A ring while open, a disc while closed, half of one while held.
void draw_gate(Canvas& canvas, const Layout& layout, GateState state) {
  const double em = layout.em, r = 0.34 * em;
  const Rect box = cell_of(layout, parameters().expander.gate).box;
  const char* name = state == GateState::kOpen   ? "open"
                     : state == GateState::kHeld ? "held"
                                                 : "shut";
  Type type = label_type(layout, kExpanderAccent);
  type.align = Align::kRight;
  const double right = box.right() - std::round(2.0 * em);
  canvas.text({right, baseline_of(box, em)}, name, type);
  const Point centre{right - canvas.width_of(name, type) - 0.4 * em - r, box.centre().y};
  if (state == GateState::kClosed) {
    canvas.fill_circle(centre, r, kExpanderAccent);
    return;
  }
  canvas.outline_circle(centre, r, kExpanderAccent, 0.13 * em);
  if (state == GateState::kHeld) {
    const Canvas::Clip lower(canvas, {centre.x - r, centre.y, 2 * r, r});
    canvas.fill_circle(centre, r, kExpanderAccent);
  }
}

}  // namespace

void draw_readouts(Canvas& canvas, const Layout& layout, const Model& model) {
  const Parameters& p = parameters();
  const Setup& setup = model.setup;
  const auto reduction = [&](std::size_t column, std::size_t on, float gain, Colour accent) {
    const double decibels = setup.is_on(on) ? static_cast<double>(gain) : 0;
    draw_track(canvas, layout, column, decibels / kFullReduction, false, accent);
    if (setup.is_on(on)) draw_number(canvas, layout, column, decibels_text(decibels), accent);
  };
  reduction(0, p.compressor.on, model.live.compressor, kCompressorAccent);
  reduction(1, p.expander.on, model.live.expander, kExpanderAccent);
  if (setup.is_gate() && model.live.has_detector) draw_gate(canvas, layout, model.live.gate);

  double level = static_cast<double>(kSilence);
  for (std::size_t c = 0; c < layout.channels; ++c) {
    level = std::max(level, static_cast<double>(model.live.dynamics[c].detector));
  }
  if (!model.live.has_detector) level = static_cast<double>(kSilence);
  draw_track(canvas, layout, 2, 1 - level / kLowestKey, true, kKeyAccent);
  const bool is_missing = setup.is_on(p.key.enable) && !model.live.has_key;
  if (is_missing) {
    draw_number(canvas, layout, 2, "no input", kWarning);
  } else if (level > -120) {
    draw_number(canvas, layout, 2, decibels_text(level), kKeyAccent);
  }
}

}  // namespace channelstrip::view
