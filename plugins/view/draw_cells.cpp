// Values as text: rows, tables, switches.

#include <algorithm>
#include <cmath>

#include "icons.h"
#include "parts.h"
#include "style.h"

namespace channelstrip::view {
namespace {

bool is_word(const Cell& cell) {
  return parameters().all[cell.parameter].kind == CHANNELSTRIP_CHOICE;
}

bool is_switch(const Cell& cell) {
  return parameters().all[cell.parameter].kind == CHANNELSTRIP_SWITCH;
}

// Whether the part of the strip that the value belongs to is at work.
bool is_at_work(const Cell& cell, const Setup& setup) {
  const Parameters& p = parameters();
  if (!cell.is_used) return false;
  switch (cell.section) {
    case Section::kEqualiser:
      return setup.is_on(p.bands[cell.band].on);
    case Section::kCompressor:
      return setup.is_on(p.compressor.on);
    case Section::kExpander:
      return setup.is_on(p.expander.on);
    default:
      return true;
  }
}

// A design's word is shortened where there is little room.
ValueText shown_text(const Layout& layout, const Setup& setup, const Cell& cell) {
  ValueText text = value_text(cell.parameter, setup.values[cell.parameter]);
  if (layout.is_small && text.number == "cookbook") text.number = "cook";
  if (layout.is_small && text.number == "matched") text.number = "match";
  return text;
}

// Of the column of units.
double unit_width(const Layout& layout) {
  return (layout.is_small ? 1.75 : 1.95) * layout.em;
}

// A number at the right with its unit in a column of its own, or a word.
void draw_value(Canvas& canvas, const Layout& layout, const Setup& setup, const Cell& cell,
                Rect box, bool has_unit_column) {
  const double em = layout.em, baseline = baseline_of(box, em);
  const bool is_bright = is_at_work(cell, setup);
  Type value = value_type(layout, is_bright ? kText : kFaint);
  Type unit = label_type(layout, is_bright ? kFaint : kUnused);
  const ValueText text = shown_text(layout, setup, cell);
  double right = box.right();
  if (has_unit_column) {
    const double width = std::max(unit_width(layout), canvas.width_of(text.unit, unit) + 0.28 * em);
    if (!text.unit.empty()) canvas.text({right - width + 0.28 * em, baseline}, text.unit, unit);
    right -= width;
  }
  if (setup.adjusted[cell.parameter]) {
    value.colour = kWarning;
    const double x = right - canvas.width_of(text.number, value) - 0.75 * em;
    draw_warning(canvas, {x, baseline - 0.76 * em}, em);
  }
  value.align = Align::kRight;
  canvas.text({right, baseline}, text.number, value);
}

void draw_row(Canvas& canvas, const Layout& layout, const Setup& setup, const Cell& cell) {
  const double em = layout.em;
  const bool is_bright = is_at_work(cell, setup);
  const Type label = label_type(layout, is_bright ? kLabel : cell.is_used ? kFaint : kUnused);
  const double baseline = baseline_of(cell.box, em);
  canvas.text({cell.box.x, baseline}, row_name(canvas, layout, cell), label);
  if (!cell.is_used) {
    const double right = cell.box.right() - (is_word(cell) ? 0 : unit_width(layout));
    canvas.text({right, baseline}, "\u2013",
                {.size = em, .colour = kUnused, .align = Align::kRight});
  } else if (is_switch(cell)) {
    draw_toggle(canvas, {cell.box.right() - std::round(1.5 * em), cell.box.centre().y}, em,
                setup.is_on(cell.parameter), is_bright ? accent_of(cell.section) : kUnused);
  } else {
    draw_value(canvas, layout, setup, cell, cell.box, !is_word(cell));
  }
}

void draw_title(Canvas& canvas, const Layout& layout, const Setup& setup, const Cell& cell) {
  const double em = layout.em;
  const bool is_on = setup.is_on(cell.parameter);
  draw_toggle(canvas, {cell.box.x, cell.box.centre().y - 1}, em, is_on, accent_of(cell.section));
  const Type type = title_type(layout, is_on ? accent_of(cell.section) : kFaint);
  const double left = std::round(1.8 * em);
  const bool fits = canvas.width_of(cell.name, type) <= cell.box.width - left + 0.3 * em;
  canvas.text({cell.box.x + left, baseline_of(cell.box, type.size) - 1},
              fits ? cell.name : cell.short_name, type);
}

void draw_column_value(Canvas& canvas, const Layout& layout, const Setup& setup, const Cell& cell) {
  const double em = layout.em;
  const BandParameters& band = parameters().bands[cell.band];
  const bool is_on = setup.is_on(band.on);
  const Rect box = cell.box;
  const Rect& head = layout.heads[cell.column].box;
  Rect inner{head.x, box.y, head.width, box.height};
  if (!cell.is_used) {
    // Where a number would end.
    const bool has_unit =
        cell.parameter == band.gain || (cell.parameter == band.slope && !layout.is_small);
    const double x = is_word(cell) ? inner.x : inner.right() - (has_unit ? unit_width(layout) : 0);
    canvas.text(
        {x, baseline_of(box, em)}, "\u2013",
        {.size = em, .colour = kUnused, .align = is_word(cell) ? Align::kLeft : Align::kRight});
    return;
  }
  if (!is_word(cell)) {
    draw_value(canvas, layout, setup, cell, inner,
               cell.parameter == band.frequency || cell.parameter == band.gain ||
                   (cell.parameter == band.slope && !layout.is_small));
    return;
  }
  const Colour colour = is_on ? kText : kFaint;
  if (cell.parameter == band.type && !layout.is_small) {
    const Rect icon{inner.x, box.centre().y - 0.42 * em, 1.25 * em, 0.84 * em};
    draw_type_icon(canvas, icon, static_cast<BandType>(setup.values[band.type]),
                   is_on ? kBandColours[cell.band] : kUnused, em);
    inner.cut_left(1.75 * em);
  }
  const std::string word = shown_text(layout, setup, cell).number;
  canvas.text({inner.x, baseline_of(box, em)}, word, label_type(layout, colour));
}

void draw_chip(Canvas& canvas, const Layout& layout, const Setup& setup, const Cell& cell) {
  const double r = std::min(0.78 * layout.em, 0.44 * layout.pitch);
  const Point centre{cell.box.x + r + 1, cell.box.centre().y};
  const Colour colour = kBandColours[cell.band];
  const bool is_on = setup.is_on(cell.parameter);
  const bool is_left_out = setup.left_out[cell.band];
  if (is_on && !is_left_out) {
    canvas.fill_circle(centre, r, colour);
  } else {
    canvas.outline_circle(centre, r, is_left_out ? kWarning : kUnused, 1.2);
  }
  const Type type{.size = 0.86 * layout.em,
                  .weight = Weight::kSemiBold,
                  .colour = is_left_out ? kWarning
                            : is_on     ? kGround
                                        : kFaint,
                  .align = Align::kCentre};
  canvas.text({centre.x, centre.y + type.size * kCapHeight / 2}, std::to_string(cell.band + 1),
              type);
}

void draw_stacked(Canvas& canvas, const Layout& layout, const Setup& setup, const Cell& cell) {
  Rect box = cell.box;
  box.cut_top(0.08 * layout.pitch);
  const Rect upper = box.cut_top(box.height / 2);
  Type label = label_type(layout, kFaint);
  label.align = Align::kCentre;
  canvas.text({upper.centre().x, baseline_of(upper, layout.em)}, cell.name, label);
  const ValueText text = value_text(cell.parameter, setup.values[cell.parameter]);
  const Type value = value_type(layout), unit = label_type(layout, kFaint);
  const double number = canvas.width_of(text.number, value);
  const double width = number + 0.28 * layout.em + canvas.width_of(text.unit, unit);
  const double x = box.centre().x - width / 2, baseline = baseline_of(box, layout.em) - 1;
  canvas.text({x, baseline}, text.number, value);
  canvas.text({x + number + 0.28 * layout.em, baseline}, text.unit, unit);
}

void draw_inline(Canvas& canvas, const Layout& layout, const Setup& setup, const Cell& cell) {
  const double em = layout.em, baseline = baseline_of(cell.box, em);
  const ValueText text = value_text(cell.parameter, setup.values[cell.parameter]);
  Type value = value_type(layout), unit = label_type(layout, kFaint), label = label_type(layout);
  value.align = unit.align = label.align = Align::kRight;
  double right = cell.box.right();
  const auto add = [&](const std::string& part, const Type& type, double gap) {
    if (part.empty()) return;
    canvas.text({right, baseline}, part, type);
    right -= canvas.width_of(part, type) + gap;
  };
  add(text.unit, unit, 0.28 * em);
  add(text.number, value, 0.6 * em);
  add(cell.name, label, 0);
}

void draw_pill(Canvas& canvas, const Layout& layout, const Setup& setup, const Cell& cell) {
  const bool is_on = setup.is_on(cell.parameter);
  Type type = title_type(layout, is_on ? kGround : kLabel);
  type.align = Align::kCentre;
  if (is_on) {
    canvas.fill_rounded(cell.box, 0.4 * layout.em, kWarning);
  } else {
    canvas.outline_rounded(cell.box, 0.4 * layout.em, kGridStrong, 1);
  }
  canvas.text({cell.box.centre().x, baseline_of(cell.box, type.size)}, cell.name, type);
}

}  // namespace

void draw_cells(Canvas& canvas, const Layout& layout, const Setup& setup) {
  for (std::size_t c = 1; c < layout.heads.size(); ++c) {
    const ColumnHead& head = layout.heads[c];
    const bool is_left = c == 1 || c >= 6;
    Type type = label_type(layout, kFaint);
    type.align = is_left ? Align::kLeft : Align::kRight;
    canvas.text({is_left ? head.box.x : head.box.right(), baseline_of(head.box, layout.em)},
                head.name, type);
  }
  for (const Cell& cell : layout.cells) {
    switch (cell.kind) {
      case CellKind::kRow:
        draw_row(canvas, layout, setup, cell);
        break;
      case CellKind::kInline:
        draw_inline(canvas, layout, setup, cell);
        break;
      case CellKind::kColumn:
        draw_column_value(canvas, layout, setup, cell);
        break;
      case CellKind::kStacked:
        draw_stacked(canvas, layout, setup, cell);
        break;
      case CellKind::kSwitch:
        draw_title(canvas, layout, setup, cell);
        break;
      case CellKind::kChip:
        draw_chip(canvas, layout, setup, cell);
        break;
      case CellKind::kPill:
        draw_pill(canvas, layout, setup, cell);
        break;
    }
  }
}

}  // namespace channelstrip::view
