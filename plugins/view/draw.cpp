#include "draw.h"

#include <algorithm>
#include <cmath>

#include "parts.h"

namespace channelstrip::view {
namespace {

void draw_below(Canvas& canvas, const Layout& layout, const Setup& setup) {
  canvas.fill({0, 0, layout.size.width, layout.size.height}, kGround);
  for (const Rect& card : {layout.equaliser, layout.dynamics, layout.input, layout.output}) {
    canvas.fill_rounded(card, 0.5 * layout.em, kCard);
  }
  draw_header(canvas, layout, setup);
  draw_equaliser_plot(canvas, layout, setup);
  draw_levels_plot(canvas, layout, setup);
  draw_history_plot(canvas, layout, setup);
  draw_meter_scales(canvas, layout, setup);
  draw_cells(canvas, layout, setup);
}

void draw_live(Canvas& canvas, const Layout& layout, const Model& model) {
  draw_spectra(canvas, layout, model);
  draw_levels(canvas, layout, model);
  draw_history(canvas, layout, model);
  draw_meters(canvas, layout, model);
  draw_readouts(canvas, layout, model);
  draw_history_buttons(canvas, layout, model);
}

Size at_least(Size size) {
  return {std::max(size.width, kLeastSize.width), std::max(size.height, kLeastSize.height)};
}

bool are_equal(const Setup& a, const Setup& b) {
  // The curves follow from these.
  return a.format == b.format && a.sample_rate == b.sample_rate && a.values == b.values &&
         a.least_range == b.least_range;
}

}  // namespace

void draw(cairo_t* context, const Fonts& fonts, const Model& model, Size size, double scale) {
  const Layout layout = layout_of(at_least(size), model.setup);
  Canvas canvas(context, fonts, scale);
  draw_below(canvas, layout, model.setup);
  draw_live(canvas, layout, model);
  draw_equaliser_curves(canvas, layout, model.setup);
  draw_attention(canvas, layout, model);
}

void Painter::prepare(const Fonts& fonts, const Setup& setup, Size size, double scale) {
  if (below_ && layout_.size == size && scale_ == scale && are_equal(setup_, setup)) return;
  setup_ = setup;
  layout_ = layout_of(size, setup);
  scale_ = scale;
  const auto pixels = [&](double length) { return static_cast<int>(std::ceil(length * scale)); };
  const auto record = [&](Surface& surface, cairo_format_t format, auto part) {
    surface.reset(cairo_image_surface_create(format, pixels(size.width), pixels(size.height)));
    cairo_t* const context = cairo_create(surface.get());
    {
      Canvas canvas(context, fonts, scale);
      part(canvas, layout_, setup_);
    }
    cairo_destroy(context);
  };
  record(below_, CAIRO_FORMAT_RGB24, draw_below);
  record(above_, CAIRO_FORMAT_ARGB32, draw_equaliser_curves);
}

void Painter::draw(cairo_t* context, const Fonts& fonts, const Model& model, Size size,
                   double scale) {
  size = at_least(size);
  prepare(fonts, model.setup, size, scale);
  cairo_save(context);
  cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(context, below_.get(), 0, 0);
  cairo_paint(context);
  cairo_restore(context);
  Canvas canvas(context, fonts, scale);
  draw_live(canvas, layout_, model);
  {
    const Canvas::Clip clip(canvas, layout_.equaliser);
    cairo_save(context);
    cairo_scale(context, 1 / scale, 1 / scale);
    cairo_set_source_surface(context, above_.get(), 0, 0);
    cairo_paint(context);
    cairo_restore(context);
  }
  draw_attention(canvas, layout_, model);
}

}  // namespace channelstrip::view
