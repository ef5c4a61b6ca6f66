// A child window of X11: its events in logical terms, and pictures put into it.

#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <string_view>

#include "../view/geometry.h"
#include "editor.h"

namespace channelstrip::window {

// What happens to the window. Points are in device pixels.
class Events {
 public:
  virtual void moved(view::Point point, Modifiers modifiers) = 0;
  virtual void left() = 0;
  virtual void pressed(view::Point point, int clicks, Modifiers modifiers) = 0;
  virtual void released(view::Point point, Modifiers modifiers) = 0;
  virtual void turned(view::Point point, double steps, Modifiers modifiers, double time) = 0;
  virtual void key_pressed(Key key, Modifiers modifiers, double time) = 0;
  virtual void typed(std::string_view text, Modifiers modifiers) = 0;
  virtual void resized(int width, int height) = 0;
  virtual void exposed() = 0;

 protected:
  ~Events() = default;
};

class X11Window {
 public:
  // Throws std::runtime_error where there is no display.
  X11Window(std::uint64_t parent, int width, int height);
  X11Window(const X11Window&) = delete;
  X11Window& operator=(const X11Window&) = delete;
  ~X11Window();

  // Device pixels for each logical one, as the desktop says: Xft.dpi / 96.
  double desktop_scale() const;
  std::uint64_t id() const;
  void set_parent(std::uint64_t parent);
  void show(bool is_shown);
  void resize(int width, int height);
  // Tells hosts how small the window may become.
  void set_least_size(int width, int height);
  // All events that have come; false once the window has been destroyed from outside.
  bool dispatch(Events& events);
  // Puts a picture into the window.
  void present(cairo_surface_t* picture);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace channelstrip::window
