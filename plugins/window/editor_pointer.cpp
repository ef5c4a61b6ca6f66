#include <algorithm>
#include <cmath>

#include "editor.h"

namespace channelstrip::window {
namespace {

using view::Part;

constexpr double kSlip = 3;            // pixels that a click may move
constexpr double kFine = 0.1;          // of the way, with shift
constexpr double kSliderPixels = 250;  // for a value's whole range

std::size_t threshold_of(std::size_t index) {
  const view::Parameters& p = view::parameters();
  return index == 0 ? p.compressor.threshold : p.expander.threshold;
}

}  // namespace

void Editor::move(view::Point point, Modifiers modifiers) {
  if (!attention_.is_pressed) {
    attention_.hovered = view::target_at(layout(), setup(), point);
    return;
  }
  const view::Point by{point.x - drag_.last.x, point.y - drag_.last.y};
  if (!drag_.has_moved) {
    if (std::hypot(by.x, by.y) < kSlip) return;
    drag_.has_moved = true;
  }
  drag_.last = point;
  const view::Target& held = attention_.hovered;
  if (held.part == Part::kHandle) {
    drag_handle(modifiers, by);
  } else if (held.part == Part::kThreshold) {
    drag_.x += by.x * (modifiers.shift ? kFine : 1);
    begin(threshold_of(held.index));
    set_rounded(threshold_of(held.index), layout().levels.level(drag_.x), modifiers);
  } else if (held.part == Part::kCell && held.index < layout().cells.size()) {
    const std::size_t parameter = layout().cells[held.index].parameter;
    if (view::parameters().all[parameter].kind == CHANNELSTRIP_NUMBER) {
      drag_value(parameter, modifiers, by);
    }
  }
}

void Editor::leave() {
  if (!attention_.is_pressed) attention_.hovered = {};
}

// To a tenth of a dB, or to three digits that count; with shift to ten times as many.
void Editor::set_rounded(std::size_t parameter, double value, Modifiers modifiers) {
  const std::string_view unit = view::parameters().all[parameter].unit;
  double step =
      unit == "dB" ? 0.1 : std::pow(10, std::floor(std::log10(std::max(value, 1e-3))) - 2);
  if (modifiers.shift) step /= 10;
  set(parameter, std::round(value / step) * step);
}

void Editor::drag_handle(Modifiers modifiers, view::Point by) {
  const std::size_t b = attention_.hovered.index;
  const view::BandParameters& band = view::parameters().bands[b];
  const double share = view::handle_share(static_cast<view::BandType>(value(band.type)));
  const double part = modifiers.shift ? kFine : 1;
  drag_.x += part * by.x;
  drag_.y += part * by.y;
  begin(band.on);
  set(band.on, 1);
  begin(band.frequency);
  set_rounded(band.frequency, std::min(layout().eq.frequency(drag_.x), 0.49 * sample_rate_),
              modifiers);
  if (share > 0) {
    begin(band.gain);
    set_rounded(band.gain, layout().eq.gain(drag_.y) / share, modifiers);
  }
}

void Editor::drag_value(std::size_t parameter, Modifiers modifiers, view::Point by) {
  const std::uint32_t id = view::parameters().all[parameter].id;
  drag_.y = std::clamp(drag_.y - by.y * (modifiers.shift ? kFine : 1) / kSliderPixels, 0.0, 1.0);
  double to = value(parameter);
  channelstrip_position_to_value(id, drag_.y, &to);
  begin(parameter);
  set_rounded(parameter, to, modifiers);
}

void Editor::press(view::Point point, int clicks, Modifiers modifiers) {
  finish_typing();
  const view::Layout& now = layout();
  const view::Target target = view::target_at(now, setup(), point);
  attention_.hovered = target;
  attention_.focused =
      target.part == Part::kCell || target.part == Part::kHandle ? target : view::Target{};
  if (clicks == 2) {
    if (target.part == Part::kHandle) reset_band(target.index);
    if (target.part == Part::kEqualiser) add_band(point);
    if (target.part == Part::kThreshold) {
      const std::size_t parameter = threshold_of(target.index);
      change(parameter, view::parameters().all[parameter].initial);
    }
    if (target.part == Part::kCell) {
      const std::size_t parameter = now.cells[target.index].parameter;
      if (view::parameters().all[parameter].kind == CHANNELSTRIP_NUMBER) {
        change(parameter, view::parameters().all[parameter].initial);
      } else {
        click(now.cells[target.index], modifiers);  // each press of a switch counts
      }
    }
    return;
  }
  if (target.part == Part::kUndo) undo();
  if (target.part == Part::kRedo) redo();
  if (target.part == Part::kMeters) clears_holds_ = true;
  if (target.part == Part::kNone || target.part == Part::kEqualiser) return;

  attention_.is_pressed = true;
  drag_ = {.last = point};
  if (target.part == Part::kHandle) {
    // The scale stays while the handle is held, and the handle comes along from where it was
    // gripped.
    setup_.least_range = now.eq.range;
    const view::Point handle = now.handles[target.index];
    drag_.x = handle.x;
    drag_.y = handle.y;
    const view::BandParameters& band = view::parameters().bands[target.index];
    if (setup_.is_on(band.on)) {
      const double share = view::handle_share(static_cast<view::BandType>(value(band.type)));
      drag_.x = now.eq.x(value(band.frequency));
      drag_.y = now.eq.y(share * value(band.gain));
    }
  } else if (target.part == Part::kThreshold) {
    drag_.x = now.levels.x(value(threshold_of(target.index)));
  } else if (target.part == Part::kCell) {
    const std::size_t parameter = now.cells[target.index].parameter;
    channelstrip_value_to_position(view::parameters().all[parameter].id, value(parameter),
                                   &drag_.y);
  }
}

void Editor::release(view::Point point, Modifiers modifiers) {
  if (!attention_.is_pressed) return;
  attention_.is_pressed = false;
  const view::Target held = attention_.hovered;
  end();
  is_setup_old_ = true;  // the scale may follow now
  if (!drag_.has_moved && held.part == Part::kCell && held.index < layout().cells.size()) {
    const view::Cell cell = layout().cells[held.index];
    click(cell, modifiers);
  }
  attention_.hovered = view::target_at(layout(), setup(), point);
}

// Switches are switched, words follow each other, numbers can be typed.
void Editor::click(const view::Cell& cell, Modifiers modifiers) {
  const channelstrip_parameter& p = view::parameters().all[cell.parameter];
  if (p.kind == CHANNELSTRIP_SWITCH) {
    change(cell.parameter, 1 - value(cell.parameter));
  } else if (p.kind == CHANNELSTRIP_CHOICE) {
    const double words = p.word_count;
    change(cell.parameter,
           std::fmod(value(cell.parameter) + (modifiers.shift ? words - 1 : 1), words));
  } else {
    char text[64] = "";
    channelstrip_value_to_text(p.id, value(cell.parameter), text, sizeof text, nullptr);
    start_typing(text);
    is_fresh_text_ = true;
  }
}

void Editor::turn(view::Point point, double steps, Modifiers modifiers, double time) {
  if (attention_.is_pressed || attention_.is_editing) return;
  const view::Target target = view::target_at(layout(), setup(), point);
  attention_.hovered = target;
  if (target.part == Part::kCell) {
    nudge(layout().cells[target.index].parameter, steps, modifiers, time);
    return;
  }
  if (target.part == Part::kThreshold) {
    nudge(threshold_of(target.index), steps, modifiers, time);
    return;
  }
  // Beside the handles, the band that has the focus.
  const bool is_near = target.part == Part::kEqualiser && attention_.focused.part == Part::kHandle;
  if (target.part != Part::kHandle && !is_near) return;
  const view::BandParameters& band =
      view::parameters().bands[is_near ? attention_.focused.index : target.index];
  const view::BandUse use = view::use_of(band, values_);
  if (use.q) {
    nudge(band.q, steps, modifiers, time);
  } else {
    nudge(use.slope ? band.slope : band.shelf_slope, steps, modifiers, time);
  }
}

void Editor::reset_band(std::size_t b) {
  const view::BandParameters& band = view::parameters().bands[b];
  for (const std::size_t parameter : {band.gain, band.q, band.shelf_slope}) {
    begin(parameter);
    set(parameter, view::parameters().all[parameter].initial);
  }
  end();
}

// The first band that is off comes here, if there is one.
void Editor::add_band(view::Point point) {
  for (std::size_t b = 0; b < view::kBands; ++b) {
    const view::BandParameters& band = view::parameters().bands[b];
    if (value(band.on) != 0) continue;
    const view::EqPlot plot = layout().eq;
    for (const auto& [parameter, to] :
         {std::pair{band.on, 1.0},
          {band.type, 0.0},
          {band.frequency, std::min(plot.frequency(point.x), 0.49 * sample_rate_)},
          {band.gain, plot.gain(point.y)}}) {
      begin(parameter);
      set(parameter, to);
    }
    end();
    attention_.focused = attention_.hovered = {Part::kHandle, b};
    return;
  }
}

}  // namespace channelstrip::window
