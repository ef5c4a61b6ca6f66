// What the pointer and the keyboard are on.

#include <algorithm>
#include <cctype>
#include <cmath>

#include "parts.h"
#include "style.h"

namespace channelstrip::view {
namespace {

void draw_cell(Canvas& canvas, const Layout& layout, const Model& model, const Cell& cell) {
  const double em = layout.em;
  const Rect box = cell.box.inset(-0.25 * em, 0);
  const Attention& attention = model.attention;
  canvas.outline_rounded(box, 0.3 * em, kText, 1.2);
  if (!attention.is_editing) return;
  canvas.fill_rounded(box, 0.3 * em, kText);
  Type type = value_type(layout, kGround);
  const double baseline = baseline_of(box, em);
  type.align = Align::kRight;
  const double right = box.right() - 0.4 * em;
  canvas.text({right, baseline}, attention.typed, type);
  canvas.vertical(right + 0.1 * em, box.y + 3, box.bottom() - 3, kGround);
}

void draw_handle_ring(Canvas& canvas, const Layout& layout, std::size_t band, double width) {
  canvas.outline_circle(layout.handles[band], layout.handle_radius + 2.5 + width, kText, width);
}

// A band's values beside its handle, inside the plot.
void draw_band_note(Canvas& canvas, const Layout& layout, const Setup& setup, std::size_t b) {
  const BandParameters& band = parameters().bands[b];
  const BandUse use = use_of(band, setup.values);
  std::string text = std::to_string(b + 1);
  const auto add = [&](std::size_t parameter, const char* before) {
    const ValueText value = value_text(parameter, setup.values[parameter]);
    text +=
        std::string("   ") + before + value.number + (value.unit.empty() ? "" : " ") + value.unit;
  };
  add(band.type, "");
  add(band.frequency, "");
  if (use.gain) add(band.gain, "");
  if (use.q) add(band.q, "Q ");
  if (use.slope) add(band.slope, "");
  const double em = layout.em;
  const Type type = value_type(layout);
  const double width = canvas.width_of(text, type) + 1.4 * em, height = 1.9 * em;
  const Rect& area = layout.eq.area;
  const Point handle = layout.handles[b];
  const double x = std::clamp(handle.x - width / 2, area.x + 2, area.right() - width - 2);
  const double above = handle.y - layout.handle_radius - height - 0.6 * em;
  const double y = above > area.y ? above : handle.y + layout.handle_radius + 0.6 * em;
  const Rect box{x, y, width, height};
  canvas.fill_rounded(box, 0.35 * em, kField.with(0.96));
  canvas.fill_rounded({box.x, box.y, 3, box.height}, 1.5, kBandColours[b]);
  canvas.text({box.x + 0.8 * em, baseline_of(box, em)}, text, type);
}

// What the value under the pointer means.
void draw_meaning(Canvas& canvas, const Layout& layout, std::size_t parameter) {
  Type type = label_type(layout, kLabel);
  std::string meaning = parameters().all[parameter].meaning;
  if (!meaning.empty()) meaning[0] = static_cast<char>(std::toupper(meaning[0]));
  std::string shown = meaning;
  while (canvas.width_of(shown, type) > layout.footer.width) {
    meaning.resize(std::min(meaning.rfind(' '), meaning.size() - 1));
    shown = meaning + "\u2026";
  }
  canvas.fill(layout.footer, kCard);
  canvas.text({layout.footer.x, baseline_of(layout.footer, layout.em)}, shown, type);
}

}  // namespace

void draw_attention(Canvas& canvas, const Layout& layout, const Model& model) {
  const Attention& attention = model.attention;
  const auto shown = attention.focused.part != Part::kNone ? attention.focused : attention.hovered;
  if (attention.hovered.part == Part::kHandle) {
    draw_handle_ring(canvas, layout, attention.hovered.index, 1.5);
    draw_band_note(canvas, layout, model.setup, attention.hovered.index);
  } else if (attention.hovered.part == Part::kCell && attention.hovered != attention.focused) {
    const Rect box = layout.cells[attention.hovered.index].box;
    canvas.fill_rounded(box.inset(-0.25 * layout.em, 0), 0.3 * layout.em, kText.with(0.07));
  }
  if (attention.focused.part == Part::kHandle) {
    draw_handle_ring(canvas, layout, attention.focused.index, 2);
  }
  if (shown.part == Part::kCell) {
    draw_meaning(canvas, layout, layout.cells[shown.index].parameter);
  }
  if (attention.focused.part == Part::kCell) {
    draw_cell(canvas, layout, model, layout.cells[attention.focused.index]);
  }
}

}  // namespace channelstrip::view
