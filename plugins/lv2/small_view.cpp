// The view's side of small_view.h.

#include "small_view.h"

#include <cairo.h>

#include <algorithm>
#include <cmath>
#include <exception>
#include <memory>
#include <vector>

#include "../owned.h"
#include "../view/small.h"

namespace channelstrip::lv2 {
namespace {

// As wide as the host wants it, and flat.
constexpr double kAspect = 0.4;

struct FreeSurface {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

class Drawing {
 public:
  bool draw(const SmallView::Model& model, std::uint32_t width, std::uint32_t height,
            SmallView::Pixels& pixels) {
    constexpr std::uint32_t kLeast = 8, kMost = 4096;
    if (width < kLeast || width > kMost) return false;
    const auto high = std::min(height, static_cast<std::uint32_t>(std::lround(kAspect * width)));
    if (high < kLeast) return false;
    update(model);
    const int w = static_cast<int>(width), h = static_cast<int>(high);
    if (!surface_ || cairo_image_surface_get_width(surface_.get()) != w ||
        cairo_image_surface_get_height(surface_.get()) != h) {
      surface_.reset(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, w, h));
    }
    if (cairo_surface_status(surface_.get()) != CAIRO_STATUS_SUCCESS) return false;
    cairo_t* const context = cairo_create(surface_.get());
    view::draw_small(context, fonts_, setup_, static_cast<double>(model.compressor),
                     static_cast<double>(model.expander),
                     {static_cast<double>(width), static_cast<double>(high)});
    cairo_destroy(context);
    cairo_surface_flush(surface_.get());
    pixels = {cairo_image_surface_get_data(surface_.get()), w, h,
              cairo_image_surface_get_stride(surface_.get())};
    return true;
  }

 private:
  // The curve is computed anew only when something was set.
  void update(const SmallView::Model& model) {
    const auto& all = view::parameters().all;
    if (!setup_.values.empty() &&
        std::equal(all.begin(), all.end(), model.values, [&](auto& p, double value) {
          return setup_.values[static_cast<std::size_t>(&p - all.data())] == value;
        })) {
      return;
    }
    for (std::size_t i = 0; i < all.size(); ++i) {
      channelstrip_settings_set(settings_.get(), all[i].id, model.values[i]);
    }
    setup_ = view::setup_of(settings_.get(), model.format, model.sample_rate);
  }

  plugins::Settings settings_ = plugins::new_settings();
  view::Setup setup_;
  view::Fonts fonts_;
  std::unique_ptr<cairo_surface_t, FreeSurface> surface_;
};

constexpr SmallView kSmallView{
    .version = kSmallViewVersion,
    .make = []() -> void* {
      try {
        return new Drawing;
      } catch (const std::exception&) {
        return nullptr;
      }
    },
    .free = [](void* drawing) { delete static_cast<Drawing*>(drawing); },
    .draw =
        [](void* drawing, const SmallView::Model* model, std::uint32_t width, std::uint32_t height,
           SmallView::Pixels* pixels) {
          try {
            return static_cast<Drawing*>(drawing)->draw(*model, width, height, *pixels);
          } catch (const std::exception&) {
            return false;
          }
        }};

}  // namespace
}  // namespace channelstrip::lv2

extern "C" __attribute__((visibility("default"))) const channelstrip::lv2::SmallView*
channelstrip_small_view() {
  return &channelstrip::lv2::kSmallView;
}
