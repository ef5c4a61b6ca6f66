#include "parts.h"
#include "style.h"

namespace channelstrip::view {
namespace {

// An arrow that turns back to the left, or mirrored.
void draw_turn(Canvas& canvas, const Rect& box, double em, double direction, Colour colour) {
  cairo_t* const c = canvas.context();
  const Point m = box.centre();
  const double r = 0.36 * em;
  cairo_new_path(c);
  cairo_move_to(c, m.x - direction * 1.35 * r, m.y - 0.5 * r);
  cairo_line_to(c, m.x + direction * 0.35 * r, m.y - 0.5 * r);
  cairo_curve_to(c, m.x + direction * 1.7 * r, m.y - 0.5 * r, m.x + direction * 1.7 * r,
                 m.y + 1.1 * r, m.x + direction * 0.35 * r, m.y + 1.1 * r);
  cairo_line_to(c, m.x - direction * 0.5 * r, m.y + 1.1 * r);
  cairo_move_to(c, m.x - direction * 0.65 * r, m.y - 1.25 * r);
  cairo_line_to(c, m.x - direction * 1.4 * r, m.y - 0.5 * r);
  cairo_line_to(c, m.x - direction * 0.65 * r, m.y + 0.25 * r);
  cairo_set_source_rgb(c, colour.red, colour.green, colour.blue);
  cairo_set_line_width(c, 0.11 * em);
  cairo_stroke(c);
}

std::string rate_text(double rate) {
  return fmt::format("{:.6g} kHz", rate / 1000);
}

}  // namespace

void draw_header(Canvas& canvas, const Layout& layout, const Setup& setup) {
  const double em = layout.em;
  Type type{.size = 1.2 * em, .weight = Weight::kSemiBold};
  const double baseline = baseline_of(layout.header, type.size);
  double x = layout.header.x + 0.2 * em;
  canvas.text({x, baseline}, "ChannelStrip", type);
  x += canvas.width_of("ChannelStrip", type) + 1.1 * em;
  channelstrip_format format{};
  channelstrip_format_info(setup.format, &format, sizeof format);
  const Type value = value_type(layout, kLabel), label = label_type(layout, kFaint);
  canvas.text({x, baseline}, format.name, value);
  x += canvas.width_of(format.name, value) + 0.8 * em;
  canvas.text({x, baseline}, rate_text(setup.sample_rate), label);
}

void draw_history_buttons(Canvas& canvas, const Layout& layout, const Model& model) {
  const Attention& attention = model.attention;
  draw_turn(canvas, layout.undo, layout.em, 1, attention.can_undo ? kLabel : kUnused);
  draw_turn(canvas, layout.redo, layout.em, -1, attention.can_redo ? kLabel : kUnused);
}

}  // namespace channelstrip::view
