#include "editor.h"

#include <algorithm>
#include <cmath>

namespace channelstrip::window {
namespace {

constexpr double kNudgesJoin = 0.7;  // s: within it a wheel's steps are one to be undone

// A value that its text shows in full: what is seen is what is set.
double as_shown(std::size_t parameter, double value) {
  const channelstrip_parameter& p = view::parameters().all[parameter];
  value = std::clamp(value, p.minimum, p.maximum);
  if (p.kind != CHANNELSTRIP_NUMBER) return std::round(value);
  char text[64];
  double shown = value;
  if (channelstrip_value_to_text(p.id, value, text, sizeof text, nullptr) == CHANNELSTRIP_OK &&
      channelstrip_text_to_value(p.id, text, &shown) == CHANNELSTRIP_OK) {
    return shown;
  }
  return value;
}

}  // namespace

Editor::Editor(Sink& sink, std::uint32_t format, double sample_rate)
    : sink_(sink), format_(format), sample_rate_(sample_rate) {
  for (const channelstrip_parameter& p : view::parameters().all) values_.push_back(p.initial);
}

void Editor::set_value(std::size_t parameter, double value) {
  if (parameter >= values_.size() || values_[parameter] == value || !std::isfinite(value)) return;
  if (std::ranges::find(gesture_, parameter, &Change::parameter) != gesture_.end()) return;
  values_[parameter] = value;
  is_setup_old_ = true;
}

void Editor::set_stream(std::uint32_t format, double sample_rate) {
  if (format == format_ && sample_rate == sample_rate_) return;
  format_ = format;
  sample_rate_ = sample_rate;
  is_setup_old_ = true;
}

void Editor::resize(view::Size size) {
  size_ = {std::max(size.width, view::kLeastSize.width),
           std::max(size.height, view::kLeastSize.height)};
  is_layout_old_ = true;
}

const view::Setup& Editor::setup() {
  if (is_setup_old_) {
    const double held = attention_.is_pressed && attention_.hovered.part == view::Part::kHandle
                            ? setup_.least_range
                            : 0;
    for (std::size_t i = 0; i < values_.size(); ++i) {
      channelstrip_settings_set(settings_.get(), view::parameters().all[i].id, values_[i]);
    }
    setup_ = view::setup_of(settings_.get(), format_, sample_rate_);
    setup_.least_range = held;
    is_setup_old_ = false;
    is_layout_old_ = true;
  }
  return setup_;
}

const view::Layout& Editor::layout() {
  setup();
  if (is_layout_old_) {
    layout_ = view::layout_of(size_, setup_);
    is_layout_old_ = false;
  }
  return layout_;
}

void Editor::begin(std::size_t parameter) {
  if (std::ranges::find(gesture_, parameter, &Change::parameter) != gesture_.end()) return;
  gesture_.push_back({parameter, value(parameter), value(parameter)});
  sink_.begin(parameter);
}

// Within a gesture.
void Editor::set(std::size_t parameter, double value) {
  const double shown = as_shown(parameter, value);
  if (shown == values_[parameter]) return;
  values_[parameter] = shown;
  std::ranges::find(gesture_, parameter, &Change::parameter)->after = shown;
  is_setup_old_ = true;
  sink_.set(parameter, shown);
}

void Editor::end() {
  for (const Change& each : gesture_) sink_.end(each.parameter);
  std::erase_if(gesture_, [](const Change& each) { return each.before == each.after; });
  if (!gesture_.empty()) steps_.add(std::move(gesture_));
  gesture_.clear();
  attention_.can_undo = steps_.can_undo();
  attention_.can_redo = steps_.can_redo();
}

// By steps of a wheel or an arrow: numbers by a hundredth of their slider, words by one.
void Editor::nudge(std::size_t parameter, double steps, Modifiers modifiers, double time) {
  const channelstrip_parameter& p = view::parameters().all[parameter];
  double to = value(parameter) + steps;
  if (p.kind == CHANNELSTRIP_NUMBER) {
    double position = 0;
    channelstrip_value_to_position(p.id, value(parameter), &position);
    position = std::clamp(position + steps * (modifiers.shift ? 0.001 : 0.01), 0.0, 1.0);
    channelstrip_position_to_value(p.id, position, &to);
    if (p.step > 0) to = value(parameter) + (steps > 0 ? p.step : -p.step);
  }
  const double before = value(parameter), after = as_shown(parameter, to);
  if (before == after) return;
  sink_.begin(parameter);
  values_[parameter] = after;
  is_setup_old_ = true;
  sink_.set(parameter, after);
  sink_.end(parameter);
  const Change made{parameter, before, after};
  if (time - nudged_at_ > kNudgesJoin || !steps_.extend(made)) steps_.add({made});
  nudged_at_ = time;
  attention_.can_undo = steps_.can_undo();
  attention_.can_redo = steps_.can_redo();
}

void Editor::apply(const Step& step, bool is_undone) {
  for (const Change& each : step) {
    const double to = is_undone ? each.before : each.after;
    sink_.begin(each.parameter);
    values_[each.parameter] = to;
    sink_.set(each.parameter, to);
    sink_.end(each.parameter);
  }
  is_setup_old_ = true;
  nudged_at_ = -1;
  attention_.can_undo = steps_.can_undo();
  attention_.can_redo = steps_.can_redo();
}

void Editor::undo() {
  if (gesture_.empty() && steps_.can_undo()) apply(steps_.undo(), true);
}

void Editor::redo() {
  if (gesture_.empty() && steps_.can_redo()) apply(steps_.redo(), false);
}

}  // namespace channelstrip::window
