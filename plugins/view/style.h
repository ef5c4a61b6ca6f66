// Types and ground shapes that all parts of the picture share.

#pragma once

#include <fmt/format.h>

#include <string>

#include "canvas.h"
#include "layout.h"

namespace channelstrip::view {

inline Type label_type(const Layout& layout, Colour colour = kLabel) {
  return {.size = 0.95 * layout.em, .colour = colour};
}
inline Type value_type(const Layout& layout, Colour colour = kText) {
  return {.size = layout.em, .weight = Weight::kMedium, .colour = colour};
}
inline Type axis_type(const Layout& layout, Align align) {
  return {.size = std::max(7.5, 0.8 * layout.em), .colour = kFaint, .align = align};
}
inline Type title_type(const Layout& layout, Colour colour) {
  return {.size = 0.86 * layout.em,
          .weight = Weight::kSemiBold,
          .colour = colour,
          .spacing = 0.035 * layout.em};
}

// Capitals and digits are this high in em, so that half of it below the middle is centred.
inline constexpr double kCapHeight = 0.727;

// The baseline of type that is centred in a box.
inline double baseline_of(const Rect& box, double type_size) {
  return box.y + box.height / 2 + type_size * kCapHeight / 2;
}

// "0.0", "−12.3", with a typographic minus.
inline std::string decibels_text(double decibels, bool has_sign = false) {
  std::string digits = fmt::format("{:.1f}", std::abs(decibels));
  if (digits == "0.0") return digits;
  return (decibels < 0 ? "\u2212" : has_sign ? "+" : "") + digits;
}

inline Colour accent_of(Section section) {
  switch (section) {
    case Section::kEqualiser:
      return kEqualiserAccent;
    case Section::kCompressor:
      return kCompressorAccent;
    case Section::kExpander:
      return kExpanderAccent;
    case Section::kKey:
      return kKeyAccent;
    default:
      return kText;
  }
}

// A row's name, or its short one where that leaves no room for a value such as "−23.5 dB". It
// depends on no value, so that names stay as values change.
inline const char* row_name(Canvas& canvas, const Layout& layout, const Cell& cell) {
  const bool is_switch = parameters().all[cell.parameter].kind == CHANNELSTRIP_SWITCH;
  const double value = (is_switch ? 2 : 4.7) * layout.em;
  const bool fits = canvas.width_of(cell.name, label_type(layout)) + value <= cell.box.width;
  return fits ? cell.name : cell.short_name;
}

}  // namespace channelstrip::view
