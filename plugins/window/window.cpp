// The window: an editor, a monitor and a painter in a window of X11.

#include <algorithm>
#include <chrono>
#include <cmath>
#include <exception>
#include <memory>
#include <optional>

#include "../view/draw.h"
#include "../view/monitor.h"
#include "editor.h"
#include "table.h"
#include "x11_window.h"

namespace channelstrip::window {
namespace {

constexpr double kFrame = 1.0 / 32;  // s between pictures, at least

double now() {
  return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::uint32_t channels_of(std::uint32_t format) {
  channelstrip_format info{};
  channelstrip_format_info(format, &info, sizeof info);
  return info.channels;
}

struct DestroySurface {
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};

class Window final : private Sink, private Events {
 public:
  explicit Window(const WindowOptions& options)
      : options_(options),
        editor_(*this, options.format, options.sample_rate),
        monitor_(std::in_place, channels_of(options.format), options.sample_rate),
        x11_(options.parent, static_cast<int>(view::kUsualSize.width),
             static_cast<int>(view::kUsualSize.height)) {
    if (options_.tap) options_.tap->look();
    monitor_->live().has_detector = options_.tap != nullptr;
    set_scale(options.scale);
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window() {
    if (options_.tap) options_.tap->look_away();
  }

  bool idle() {
    if (!x11_.dispatch(*this)) return false;
    const double time = now(), seconds = time - drawn_at_;
    if (seconds < kFrame && !is_old_) return true;
    if (seconds >= kFrame / 2) {
      follow(std::min(seconds, 1.0));
      drawn_at_ = time;
    }
    draw();
    return true;
  }

  std::uint64_t id() const { return x11_.id(); }
  void set_parent(std::uint64_t parent) { x11_.set_parent(parent); }
  void show(bool is_shown) { x11_.show(is_shown); }
  int width() const { return width_; }
  int height() const { return height_; }
  int pixels(double length) const { return static_cast<int>(std::ceil(length * scale_)); }
  void resize(int width, int height) {
    width = std::max(width, pixels(view::kLeastSize.width));
    height = std::max(height, pixels(view::kLeastSize.height));
    x11_.resize(width, height);
    resized(width, height);
  }
  void set_scale(double scale) {
    scale_ = scale > 0 ? std::clamp(scale, 0.5, 4.0) : x11_.desktop_scale();
    resize(pixels(view::kUsualSize.width), pixels(view::kUsualSize.height));
  }
  void set_value(std::size_t parameter, double value) { editor_.set_value(parameter, value); }
  void set_stream(std::uint32_t format, double sample_rate) {
    if (format == options_.format && sample_rate == options_.sample_rate) return;
    options_.format = format;
    options_.sample_rate = sample_rate;
    editor_.set_stream(format, sample_rate);
    monitor_.emplace(channels_of(format), sample_rate);
    monitor_->live().has_detector = options_.tap != nullptr;
  }
  void set_meters(const channelstrip_meters& meters) { told_ = meters; }

 private:
  // From the editor.
  void begin(std::size_t parameter) override {
    options_.host.begin(options_.host.self, static_cast<std::uint32_t>(parameter));
  }
  void set(std::size_t parameter, double value) override {
    options_.host.set(options_.host.self, static_cast<std::uint32_t>(parameter), value);
  }
  void end(std::size_t parameter) override {
    options_.host.end(options_.host.self, static_cast<std::uint32_t>(parameter));
  }

  // From X11.
  view::Point logical(view::Point p) const { return {p.x / scale_, p.y / scale_}; }
  void moved(view::Point point, Modifiers modifiers) override {
    is_old_ = true;
    editor_.move(logical(point), modifiers);
  }
  void left() override {
    is_old_ = true;
    editor_.leave();
  }
  void pressed(view::Point point, int clicks, Modifiers modifiers) override {
    is_old_ = true;
    editor_.press(logical(point), clicks, modifiers);
    if (editor_.takes_holds_cleared()) monitor_->clear_holds();
  }
  void released(view::Point point, Modifiers modifiers) override {
    is_old_ = true;
    editor_.release(logical(point), modifiers);
  }
  void turned(view::Point point, double steps, Modifiers modifiers, double time) override {
    is_old_ = true;
    editor_.turn(logical(point), steps, modifiers, time);
  }
  void key_pressed(Key key, Modifiers modifiers, double time) override {
    is_old_ = editor_.press(key, modifiers, time) || is_old_;
  }
  void typed(std::string_view text, Modifiers modifiers) override {
    is_old_ = editor_.type(text, modifiers) || is_old_;
  }
  void resized(int width, int height) override {
    is_old_ = true;
    if (width == width_ && height == height_) return;
    width_ = width;
    height_ = height;
    picture_.reset();
    editor_.resize({width_ / scale_, height_ / scale_});
  }
  void exposed() override { is_old_ = true; }

  void follow(double seconds) {
    channelstrip_meters news{};
    bool has_news = false;
    if (options_.tap) {
      has_news = options_.tap->meters().take(news);
    } else if (told_) {
      news = *std::exchange(told_, std::nullopt);
      has_news = true;
    }
    monitor_->advance(seconds, has_news ? &news : nullptr, editor_.setup());
    if (!options_.tap) return;
    monitor_->live().has_key = options_.tap->has_key();
    const auto* const rings = options_.tap->rings();
    if (rings && rings->channels == channels_of(options_.format)) {
      monitor_->analyse(seconds, rings->inputs, rings->outputs);
    }
  }

  void draw() {
    is_old_ = false;
    if (!picture_) {
      picture_.reset(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width_, height_));
    }
    if (cairo_surface_status(picture_.get()) != CAIRO_STATUS_SUCCESS) return;
    model_.setup = editor_.setup();
    model_.live = monitor_->live();
    model_.attention = editor_.attention();
    cairo_t* const context = cairo_create(picture_.get());
    painter_.draw(context, fonts_, model_, {width_ / scale_, height_ / scale_}, scale_);
    cairo_destroy(context);
    x11_.present(picture_.get());
  }

  WindowOptions options_;
  Editor editor_;
  std::optional<view::Monitor> monitor_;
  std::optional<channelstrip_meters> told_;
  X11Window x11_;
  view::Fonts fonts_;
  view::Painter painter_;
  view::Model model_;
  std::unique_ptr<cairo_surface_t, DestroySurface> picture_;
  double scale_ = 1, drawn_at_ = 0;
  int width_ = 0, height_ = 0;
  bool is_old_ = true;
};

Window& window_of(void* window) {
  return *static_cast<Window*>(window);
}

}  // namespace

const WindowTable& window_table() {
  static constexpr WindowTable kTable{
      .version = kWindowVersion,
      .tap_size = sizeof(plugins::Tap),
      .open = [](const WindowOptions* options) -> void* {
        try {
          return new Window(*options);
        } catch (const std::exception&) {
          return nullptr;
        }
      },
      .close = [](void* window) { delete &window_of(window); },
      .idle =
          [](void* window) {
            try {
              return window_of(window).idle();
            } catch (const std::exception&) {
              return true;  // without memory: perhaps there is some the next time
            }
          },
      .id = [](void* window) { return window_of(window).id(); },
      .set_parent = [](void* window,
                       std::uint64_t parent) { window_of(window).set_parent(parent); },
      .show = [](void* window, bool is_shown) { window_of(window).show(is_shown); },
      .size =
          [](void* window, std::uint32_t* width, std::uint32_t* height) {
            *width = static_cast<std::uint32_t>(window_of(window).width());
            *height = static_cast<std::uint32_t>(window_of(window).height());
          },
      .least_size =
          [](void* window, std::uint32_t* width, std::uint32_t* height) {
            const Window& w = window_of(window);
            *width = static_cast<std::uint32_t>(w.pixels(view::kLeastSize.width));
            *height = static_cast<std::uint32_t>(w.pixels(view::kLeastSize.height));
          },
      .resize =
          [](void* window, std::uint32_t width, std::uint32_t height) {
            constexpr std::uint32_t kMost = 16384;
            window_of(window).resize(static_cast<int>(std::min(width, kMost)),
                                     static_cast<int>(std::min(height, kMost)));
          },
      .set_scale = [](void* window, double scale) { window_of(window).set_scale(scale); },
      .set_value = [](void* window, std::uint32_t parameter,
                      double value) { window_of(window).set_value(parameter, value); },
      .set_stream =
          [](void* window, std::uint32_t format, double rate) {
            try {
              window_of(window).set_stream(format, rate);
            } catch (const std::exception&) {
              // It goes on showing the earlier one.
            }
          },
      .set_meters =
          [](void* window, const channelstrip_meters* meters) {
            window_of(window).set_meters(*meters);
          }};
  return kTable;
}

}  // namespace channelstrip::window
