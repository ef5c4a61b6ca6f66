#include "image.h"

#include <algorithm>
#include <cstdlib>

namespace channelstrip::view_test {

Difference difference(cairo_surface_t* a, cairo_surface_t* b) {
  const int width = cairo_image_surface_get_width(a), height = cairo_image_surface_get_height(a);
  Difference found{.pixels = static_cast<std::size_t>(width) * static_cast<std::size_t>(height)};
  if (cairo_image_surface_get_width(b) != width || cairo_image_surface_get_height(b) != height) {
    found.slight = found.strong = found.pixels;
    return found;
  }
  for (int y = 0; y < height; ++y) {
    const auto row = [y](cairo_surface_t* image) {
      return cairo_image_surface_get_data(image) + y * cairo_image_surface_get_stride(image);
    };
    const unsigned char *of_a = row(a), *of_b = row(b);
    for (int x = 0; x < width; ++x) {
      int greatest = 0;
      for (int channel = 0; channel < 3; ++channel) {
        const int at = 4 * x + channel;
        greatest = std::max(greatest, std::abs(int{of_a[at]} - int{of_b[at]}));
      }
      if (greatest > 2) ++found.slight;
      if (greatest > 32) ++found.strong;
    }
  }
  return found;
}

Image read_png(const std::string& path) {
  Image read(cairo_image_surface_create_from_png(path.c_str()));
  if (cairo_surface_status(read.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  // A file may have come back with other pixels than a drawing has.
  const Part all{0, 0, cairo_image_surface_get_width(read.get()),
                 cairo_image_surface_get_height(read.get())};
  return drawn(all, [&](cairo_t* context) {
    cairo_set_source_surface(context, read.get(), 0, 0);
    cairo_paint(context);
  });
}

bool write_png(cairo_surface_t* image, const std::string& path) {
  return cairo_surface_write_to_png(image, path.c_str()) == CAIRO_STATUS_SUCCESS;
}

}  // namespace channelstrip::view_test
