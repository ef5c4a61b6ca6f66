// Pictures as pixels, and how far two are apart.

#pragma once

#include <cairo.h>

#include <cstddef>
#include <memory>
#include <string>

#include "plugins/view/draw.h"

namespace channelstrip::view_test {

struct DestroySurface {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
using Image = std::unique_ptr<cairo_surface_t, DestroySurface>;

// In device pixels.
struct Part {
  int x = 0, y = 0, width = 0, height = 0;
};

// The part of a model's picture; `by` calls draw() or a Painter's.
template <class Draw>
Image drawn(const Part& part, Draw by) {
  Image image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, part.width, part.height));
  cairo_t* const context = cairo_create(image.get());
  cairo_translate(context, -part.x, -part.y);
  by(context);
  cairo_destroy(context);
  cairo_surface_flush(image.get());
  return image;
}

// How many pixels differ in a channel by more than 2 and by more than 32 of 255; all of them where
// the sizes differ.
struct Difference {
  std::size_t slight = 0, strong = 0, pixels = 0;
};
Difference difference(cairo_surface_t* a, cairo_surface_t* b);

// Null where there is no such file.
Image read_png(const std::string& path);
bool write_png(cairo_surface_t* image, const std::string& path);

}  // namespace channelstrip::view_test
