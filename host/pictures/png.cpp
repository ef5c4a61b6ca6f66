#include "png.h"

#include <cairo.h>
#include <fmt/format.h>
#include <librsvg/rsvg.h>

#include <cmath>
#include <exception>
#include <memory>
#include <stdexcept>

namespace channelstrip::host {
namespace {

struct Delete {
  void operator()(RsvgHandle* handle) const { g_object_unref(handle); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_t* context) const { cairo_destroy(context); }
};

[[noreturn]] void fail(GError* error) {
  const std::string what = fmt::format("can't draw the picture: {}", error->message);
  g_error_free(error);
  throw std::runtime_error(what);
}

void check(cairo_status_t status) {
  if (status == CAIRO_STATUS_SUCCESS) return;
  throw std::runtime_error(
      fmt::format("can't draw the picture: {}", cairo_status_to_string(status)));
}

// Called by C, through which no exception may pass.
cairo_status_t append(void* png, const unsigned char* data, unsigned int size) noexcept {
  try {
    static_cast<std::string*>(png)->append(reinterpret_cast<const char*>(data), size);
    return CAIRO_STATUS_SUCCESS;
  } catch (const std::exception&) {
    return CAIRO_STATUS_NO_MEMORY;
  }
}

}  // namespace

std::string to_png(std::string_view svg, double scale) {
  GError* error = nullptr;
  const std::unique_ptr<RsvgHandle, Delete> handle(
      rsvg_handle_new_from_data(reinterpret_cast<const guint8*>(svg.data()), svg.size(), &error));
  if (!handle) fail(error);
  double width = 0, height = 0;
  rsvg_handle_get_intrinsic_size_in_pixels(handle.get(), &width, &height);

  const RsvgRectangle page{0, 0, std::ceil(width * scale), std::ceil(height * scale)};
  const std::unique_ptr<cairo_surface_t, Delete> surface(cairo_image_surface_create(
      CAIRO_FORMAT_ARGB32, static_cast<int>(page.width), static_cast<int>(page.height)));
  check(cairo_surface_status(surface.get()));
  const std::unique_ptr<cairo_t, Delete> context(cairo_create(surface.get()));
  if (!rsvg_handle_render_document(handle.get(), context.get(), &page, &error)) fail(error);
  check(cairo_status(context.get()));
  std::string png;
  check(cairo_surface_write_to_png_stream(surface.get(), append, &png));
  return png;
}

}  // namespace channelstrip::host
