// The window: an editor, a monitor and a painter in a window of X11. The main thread's.

#pragma once

#include <channelstrip/channelstrip.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "../view/draw.h"
#include "../view/monitor.h"
#include "editor.h"
#include "table.h"
#include "x11_window.h"

namespace channelstrip::window {

// Sizes are in device pixels.
class Window final : private Sink, private Events {
 public:
  // Throws std::runtime_error without a display, std::bad_alloc.
  explicit Window(const WindowOptions& options);
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;
  ~Window();

  // Events, meters and, where it is time, a picture; false once the window is gone.
  bool idle();

  std::uint64_t id() const { return x11_.id(); }
  void set_parent(std::uint64_t parent) { x11_.set_parent(parent); }
  void show(bool is_shown) { x11_.show(is_shown); }
  int width() const { return width_; }
  int height() const { return height_; }
  int least_width() const { return pixels(view::kLeastSize.width); }
  int least_height() const { return pixels(view::kLeastSize.height); }
  void resize(int width, int height);
  void set_scale(double scale);
  void set_value(std::size_t parameter, double value) { editor_.set_value(parameter, value); }
  void set_stream(std::uint32_t format, double sample_rate);
  void set_meters(const channelstrip_meters& meters) { told_ = meters; }

 private:
  struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  };

  // From the editor.
  void begin(std::size_t parameter) override;
  void set(std::size_t parameter, double value) override;
  void end(std::size_t parameter) override;

  // From X11.
  void moved(view::Point point, Modifiers modifiers) override;
  void left() override;
  void pressed(view::Point point, int clicks, Modifiers modifiers) override;
  void released(view::Point point, Modifiers modifiers) override;
  void turned(view::Point point, double steps, Modifiers modifiers, double time) override;
  void key_pressed(Key key, Modifiers modifiers, double time) override;
  void typed(std::string_view text, Modifiers modifiers) override;
  void resized(int width, int height) override;
  void exposed() override { is_old_ = true; }

  int pixels(double length) const;
  view::Point logical(view::Point p) const { return {p.x / scale_, p.y / scale_}; }
  void follow(double seconds);
  void draw();

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

}  // namespace channelstrip::window
