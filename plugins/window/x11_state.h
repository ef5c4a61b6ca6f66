// What the window of X11 consists of, for those of its functions that know X11.

#pragma once

#include <X11/Xlib.h>
#include <cairo.h>

#include "x11_window.h"

namespace channelstrip::window {

// While this lives, errors of the display end nothing: a host may destroy the parent at any time.
class ErrorGuard {
 public:
  explicit ErrorGuard(Display* display) : display_(display) {
    earlier_ = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
  }
  ErrorGuard(const ErrorGuard&) = delete;
  ErrorGuard& operator=(const ErrorGuard&) = delete;
  ~ErrorGuard() {
    XSync(display_, False);
    XSetErrorHandler(earlier_);
  }

 private:
  Display* display_;
  XErrorHandler earlier_;
};

struct X11Window::State {
  Display* display = nullptr;
  ::Window window = 0;
  cairo_surface_t* surface = nullptr;
  bool is_gone = false;
  Time pressed_at = 0;
  view::Point pressed_where;
  int claims = 0;  // how many times more the focus is fetched back

  void keep_focus();
  void press(const XButtonEvent& event, Events& events);
  void key(XKeyEvent& event, Events& events);
};

}  // namespace channelstrip::window
