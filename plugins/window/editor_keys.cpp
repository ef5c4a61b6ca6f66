#include <algorithm>
#include <cmath>

#include "editor.h"

namespace channelstrip::window {

using view::Part;

const view::Cell* Editor::focused_cell() {
  if (attention_.focused.part != Part::kCell) return nullptr;
  const auto& cells = layout().cells;
  return attention_.focused.index < cells.size() ? &cells[attention_.focused.index] : nullptr;
}

void Editor::start_typing(std::string text) {
  attention_.is_editing = true;
  attention_.typed = std::move(text);
  is_fresh_text_ = false;
}

// Takes what was typed; false if it means nothing, which changes nothing.
bool Editor::finish_typing() {
  if (!attention_.is_editing) return true;
  attention_.is_editing = false;
  const view::Cell* const cell = focused_cell();
  if (!cell) return false;
  const std::size_t parameter = cell->parameter;
  double typed = 0;
  if (channelstrip_text_to_value(view::parameters().all[parameter].id, attention_.typed.c_str(),
                                 &typed) != CHANNELSTRIP_OK) {
    return false;
  }
  change(parameter, typed);
  return true;
}

void Editor::focus_next(int direction) {
  const auto& cells = layout().cells;
  const auto count = static_cast<int>(cells.size());
  int at = attention_.focused.part == Part::kCell ? static_cast<int>(attention_.focused.index)
                                                  : (direction > 0 ? -1 : 0);
  do {
    at = (at + direction + count) % count;
  } while (!cells[static_cast<std::size_t>(at)].is_used);
  attention_.focused = {Part::kCell, static_cast<std::size_t>(at)};
}

bool Editor::press(Key key, Modifiers modifiers, double time) {
  if (attention_.is_pressed) return false;
  if (key == Key::kTab) {
    finish_typing();
    focus_next(modifiers.shift ? -1 : 1);
    return true;
  }
  if (attention_.is_editing) {
    if (key == Key::kEnter) {
      finish_typing();
    } else if (key == Key::kEscape) {
      attention_.is_editing = false;
    } else if (key == Key::kBackspace) {
      if (is_fresh_text_) attention_.typed.clear();
      is_fresh_text_ = false;
      std::string& typed = attention_.typed;
      while (!typed.empty() && (typed.back() & 0xC0) == 0x80) typed.pop_back();
      if (!typed.empty()) typed.pop_back();
    } else if (key == Key::kDelete) {
      attention_.typed.clear();
    } else if (key == Key::kSpace) {
      return type(" ", modifiers);
    }
    return true;
  }
  if (key == Key::kEscape) {
    const bool had_focus = attention_.focused != view::Target{};
    attention_.focused = {};
    return had_focus;
  }
  const view::Cell* const cell = focused_cell();
  if (!cell) return false;
  const std::size_t parameter = cell->parameter;
  switch (key) {
    case Key::kUp:
      nudge(parameter, 1, modifiers, time);
      return true;
    case Key::kDown:
      nudge(parameter, -1, modifiers, time);
      return true;
    case Key::kLeft:
    case Key::kRight:
      focus_next(key == Key::kLeft ? -1 : 1);
      return true;
    case Key::kEnter:
    case Key::kSpace: {
      const view::Cell copy = *cell;
      click(copy, modifiers);
      return true;
    }
    case Key::kDelete:
    case Key::kBackspace:
      change(parameter, view::parameters().all[parameter].initial);
      return true;
    default:
      return false;
  }
}

bool Editor::type(std::string_view text, Modifiers modifiers) {
  if (attention_.is_pressed || text.empty()) return false;
  if (modifiers.control) {
    if (text == "z" && !modifiers.shift) {
      undo();
    } else if (text == "y" || text == "z" || text == "Z") {
      redo();
    } else {
      return false;
    }
    return true;
  }
  const view::Cell* const cell = focused_cell();
  if (!cell || static_cast<unsigned char>(text.front()) < 0x20) return false;
  if (!attention_.is_editing) {
    // A number begins to be typed where the focus is.
    const bool is_number = view::parameters().all[cell->parameter].kind == CHANNELSTRIP_NUMBER;
    if (!is_number ||
        std::string_view("0123456789+-.,i").find(text.front()) == std::string_view::npos) {
      return false;
    }
    start_typing("");
  }
  constexpr std::size_t kMostTyped = 24;
  if (is_fresh_text_) attention_.typed.clear();
  is_fresh_text_ = false;
  if (attention_.typed.size() + text.size() <= kMostTyped) attention_.typed += text;
  return true;
}

}  // namespace channelstrip::window
