#include "canvas.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace channelstrip::view {

Canvas::Canvas(cairo_t* context, const Fonts& fonts, double scale)
    : context_(context),
      fonts_(fonts),
      scale_(scale),
      hairline_(std::max(1.0, std::floor(scale)) / scale) {
  cairo_save(context_);
  cairo_scale(context_, scale, scale);
  cairo_set_line_join(context_, CAIRO_LINE_JOIN_ROUND);
  cairo_set_line_cap(context_, CAIRO_LINE_CAP_BUTT);
  cairo_font_options_t* options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(context_, options);
  cairo_font_options_destroy(options);
}

Canvas::~Canvas() {
  cairo_restore(context_);
}

double Canvas::snapped(double coordinate) const {
  return std::round(coordinate * scale_) / scale_;
}

void Canvas::set(Colour colour) {
  cairo_set_source_rgba(context_, colour.red, colour.green, colour.blue, colour.alpha);
}

void Canvas::fill(const Rect& rect, Colour colour) {
  const double x = snapped(rect.x), y = snapped(rect.y);
  cairo_rectangle(context_, x, y, snapped(rect.right()) - x, snapped(rect.bottom()) - y);
  set(colour);
  cairo_fill(context_);
}

void Canvas::rounded_path(const Rect& rect, double radius) {
  constexpr double kQuarter = std::numbers::pi / 2;
  const double r = std::min({radius, rect.width / 2, rect.height / 2});
  cairo_new_sub_path(context_);
  cairo_arc(context_, rect.right() - r, rect.y + r, r, -kQuarter, 0);
  cairo_arc(context_, rect.right() - r, rect.bottom() - r, r, 0, kQuarter);
  cairo_arc(context_, rect.x + r, rect.bottom() - r, r, kQuarter, 2 * kQuarter);
  cairo_arc(context_, rect.x + r, rect.y + r, r, 2 * kQuarter, 3 * kQuarter);
  cairo_close_path(context_);
}

void Canvas::fill_rounded(const Rect& rect, double radius, Colour colour) {
  rounded_path(rect, radius);
  set(colour);
  cairo_fill(context_);
}

void Canvas::outline_rounded(const Rect& rect, double radius, Colour colour, double width) {
  rounded_path(rect.inset(width / 2, width / 2), radius - width / 2);
  set(colour);
  cairo_set_line_width(context_, width);
  cairo_stroke(context_);
}

void Canvas::fill_circle(Point centre, double radius, Colour colour) {
  cairo_new_sub_path(context_);
  cairo_arc(context_, centre.x, centre.y, radius, 0, 2 * std::numbers::pi);
  set(colour);
  cairo_fill(context_);
}

void Canvas::outline_circle(Point centre, double radius, Colour colour, double width) {
  cairo_new_sub_path(context_);
  cairo_arc(context_, centre.x, centre.y, radius - width / 2, 0, 2 * std::numbers::pi);
  set(colour);
  cairo_set_line_width(context_, width);
  cairo_stroke(context_);
}

void Canvas::horizontal(double x1, double x2, double y, Colour colour) {
  const double top = snapped(y - hairline_ / 2);
  fill({x1, top, x2 - x1, hairline_}, colour);
}

void Canvas::vertical(double x, double y1, double y2, Colour colour) {
  const double left = snapped(x - hairline_ / 2);
  fill({left, y1, hairline_, y2 - y1}, colour);
}

void Canvas::path(std::span<const Point> points, bool is_area, double base) {
  bool is_open = false;
  double last_x = 0;
  const auto close = [&] {
    if (is_open && is_area) {
      cairo_line_to(context_, last_x, base);
      cairo_close_path(context_);
    }
    is_open = false;
  };
  for (const Point& p : points) {
    if (!std::isfinite(p.x) || !std::isfinite(p.y)) {
      close();
      continue;
    }
    if (!is_open && is_area) cairo_move_to(context_, p.x, base);
    if (is_open || is_area) {
      cairo_line_to(context_, p.x, p.y);
    } else {
      cairo_move_to(context_, p.x, p.y);
    }
    is_open = true;
    last_x = p.x;
  }
  close();
}

void Canvas::line(std::span<const Point> points, Colour colour, double width,
                  std::span<const double> dashes) {
  cairo_new_path(context_);
  path(points, false, 0);
  set(colour);
  cairo_set_line_width(context_, width);
  cairo_set_dash(context_, dashes.data(), static_cast<int>(dashes.size()), 0);
  cairo_stroke(context_);
  if (!dashes.empty()) cairo_set_dash(context_, nullptr, 0, 0);
}

void Canvas::area(std::span<const Point> points, double base, Colour colour) {
  cairo_new_path(context_);
  path(points, true, base);
  set(colour);
  cairo_fill(context_);
}

void Canvas::polygon(std::span<const Point> points, Colour colour) {
  cairo_new_path(context_);
  path(points, false, 0);
  cairo_close_path(context_);
  set(colour);
  cairo_fill(context_);
}

Canvas::Clip::Clip(Canvas& canvas, const Rect& rect) : context_(canvas.context_) {
  const double x = canvas.snapped(rect.x), y = canvas.snapped(rect.y);
  cairo_save(context_);
  cairo_rectangle(context_, x, y, canvas.snapped(rect.right()) - x,
                  canvas.snapped(rect.bottom()) - y);
  cairo_clip(context_);
}

Canvas::Clip::~Clip() {
  cairo_restore(context_);
}

}  // namespace channelstrip::view
