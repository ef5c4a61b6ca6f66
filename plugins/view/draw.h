// The picture of a strip: a pure function of its model.

#pragma once

#include <cairo.h>

#include <memory>

#include "canvas.h"
#include "layout.h"
#include "model.h"

namespace channelstrip::view {

// Draws everything, `scale` device pixels for each logical one, from the context's origin. A size
// below kLeastSize is drawn as that, and cut off by the surface.
void draw(cairo_t* context, const Fonts& fonts, const Model& model, Size size, double scale);

// The same picture, faster where only meters move: what depends on the settings alone is kept.
class Painter {
 public:
  void draw(cairo_t* context, const Fonts& fonts, const Model& model, Size size, double scale);
  // Of the last picture.
  const Layout& layout() const { return layout_; }

 private:
  struct Destroy {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };
  using Surface = std::unique_ptr<cairo_surface_t, Destroy>;
  void prepare(const Fonts& fonts, const Setup& setup, Size size, double scale);

  Setup setup_;
  Layout layout_{};
  double scale_ = 0;
  Surface below_, above_;
};

}  // namespace channelstrip::view
