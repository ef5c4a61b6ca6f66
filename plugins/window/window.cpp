#include "window.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

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

}  // namespace

Window::Window(const WindowOptions& options)
    : options_(options),
      editor_(*this, options.format, options.sample_rate),
      monitor_(std::in_place, channels_of(options.format), options.sample_rate),
      x11_(options.parent, static_cast<int>(view::kUsualSize.width),
           static_cast<int>(view::kUsualSize.height)) {
  if (options_.tap) options_.tap->look();
  monitor_->live().has_detector = options_.tap != nullptr;
  set_scale(options.scale);
}

Window::~Window() {
  if (options_.tap) options_.tap->look_away();
}

bool Window::idle() {
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

void Window::resize(int width, int height) {
  width = std::max(width, least_width());
  height = std::max(height, least_height());
  x11_.resize(width, height);
  resized(width, height);
}

void Window::set_scale(double scale) {
  scale_ = scale > 0 ? std::clamp(scale, 0.5, 4.0) : x11_.desktop_scale();
  x11_.set_least_size(least_width(), least_height());
  resize(pixels(view::kUsualSize.width), pixels(view::kUsualSize.height));
}

void Window::set_stream(std::uint32_t format, double sample_rate) {
  if (format == options_.format && sample_rate == options_.sample_rate) return;
  options_.format = format;
  options_.sample_rate = sample_rate;
  editor_.set_stream(format, sample_rate);
  monitor_.emplace(channels_of(format), sample_rate);
  monitor_->live().has_detector = options_.tap != nullptr;
}

void Window::begin(std::size_t parameter) {
  options_.host.begin(options_.host.self, static_cast<std::uint32_t>(parameter));
}

void Window::set(std::size_t parameter, double value) {
  options_.host.set(options_.host.self, static_cast<std::uint32_t>(parameter), value);
}

void Window::end(std::size_t parameter) {
  options_.host.end(options_.host.self, static_cast<std::uint32_t>(parameter));
}

void Window::moved(view::Point point, Modifiers modifiers) {
  is_old_ = true;
  editor_.move(logical(point), modifiers);
}

void Window::left() {
  is_old_ = true;
  editor_.leave();
}

void Window::pressed(view::Point point, int clicks, Modifiers modifiers) {
  is_old_ = true;
  editor_.press(logical(point), clicks, modifiers);
  if (editor_.takes_holds_cleared()) monitor_->clear_holds();
}

void Window::released(view::Point point, Modifiers modifiers) {
  is_old_ = true;
  editor_.release(logical(point), modifiers);
}

void Window::turned(view::Point point, double steps, Modifiers modifiers, double time) {
  is_old_ = true;
  editor_.turn(logical(point), steps, modifiers, time);
}

void Window::key_pressed(Key key, Modifiers modifiers, double time) {
  is_old_ = editor_.press(key, modifiers, time) || is_old_;
}

void Window::typed(std::string_view text, Modifiers modifiers) {
  is_old_ = editor_.type(text, modifiers) || is_old_;
}

void Window::resized(int width, int height) {
  is_old_ = true;
  if (width == width_ && height == height_) return;
  width_ = width;
  height_ = height;
  picture_.reset();
  editor_.resize({width_ / scale_, height_ / scale_});
}

int Window::pixels(double length) const {
  return static_cast<int>(std::ceil(length * scale_));
}

void Window::follow(double seconds) {
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

void Window::draw() {
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

}  // namespace channelstrip::window
