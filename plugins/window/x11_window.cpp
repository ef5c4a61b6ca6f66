#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xresource.h>
#include <X11/Xutil.h>
#include <cairo-xlib.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <stdexcept>

#include "x11_state.h"

namespace channelstrip::window {
namespace {

constexpr long kEvents = ExposureMask | StructureNotifyMask | PointerMotionMask | ButtonPressMask |
                         ButtonReleaseMask | KeyPressMask | LeaveWindowMask;

}  // namespace

X11Window::X11Window(std::uint64_t parent, int width, int height)
    : state_(std::make_unique<State>()) {
  State& s = *state_;
  s.display = XOpenDisplay(nullptr);
  if (!s.display) throw std::runtime_error("there is no display");
  const ErrorGuard guard(s.display);
  const int screen = DefaultScreen(s.display);
  const ::Window above = parent ? static_cast<::Window>(parent) : RootWindow(s.display, screen);
  XSetWindowAttributes attributes{};
  attributes.event_mask = kEvents;
  attributes.bit_gravity = NorthWestGravity;
  attributes.colormap = DefaultColormap(s.display, screen);
  Visual* const visual = DefaultVisual(s.display, screen);
  s.window =
      XCreateWindow(s.display, above, 0, 0, static_cast<unsigned>(width),
                    static_cast<unsigned>(height), 0, DefaultDepth(s.display, screen), InputOutput,
                    visual, CWEventMask | CWBitGravity | CWColormap, &attributes);
  // As the XEmbed protocol asks: version 0, to be mapped by the one who embeds.
  const long info[2] = {0, 1};
  const Atom property = XInternAtom(s.display, "_XEMBED_INFO", False);
  XChangeProperty(s.display, s.window, property, property, 32, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(info), 2);
  s.surface = cairo_xlib_surface_create(s.display, s.window, visual, width, height);
}

X11Window::~X11Window() {
  State& s = *state_;
  {
    const ErrorGuard guard(s.display);
    cairo_surface_finish(s.surface);
    cairo_surface_destroy(s.surface);
    if (!s.is_gone) XDestroyWindow(s.display, s.window);
  }
  XCloseDisplay(s.display);
}

double X11Window::desktop_scale() const {
  const char* const resources = XResourceManagerString(state_->display);
  if (!resources) return 1;
  XrmInitialize();
  XrmDatabase database = XrmGetStringDatabase(resources);
  if (!database) return 1;
  char* type = nullptr;
  XrmValue value{};
  double dpi = 96;
  if (XrmGetResource(database, "Xft.dpi", "Xft.Dpi", &type, &value) && value.addr) {
    dpi = std::strtod(value.addr, nullptr);
  }
  XrmDestroyDatabase(database);
  // In quarters, so that hairlines stay even.
  return std::clamp(std::round(dpi / 96 * 4) / 4, 1.0, 4.0);
}

std::uint64_t X11Window::id() const {
  return state_->window;
}

void X11Window::set_parent(std::uint64_t parent) {
  if (state_->is_gone) return;
  const ErrorGuard guard(state_->display);
  XReparentWindow(state_->display, state_->window, static_cast<::Window>(parent), 0, 0);
}

void X11Window::show(bool is_shown) {
  if (state_->is_gone) return;
  const ErrorGuard guard(state_->display);
  if (is_shown) {
    XMapRaised(state_->display, state_->window);
  } else {
    XUnmapWindow(state_->display, state_->window);
  }
}

void X11Window::resize(int width, int height) {
  if (state_->is_gone) return;
  const ErrorGuard guard(state_->display);
  XResizeWindow(state_->display, state_->window, static_cast<unsigned>(width),
                static_cast<unsigned>(height));
}

void X11Window::set_least_size(int width, int height) {
  if (state_->is_gone) return;
  const ErrorGuard guard(state_->display);
  XSizeHints hints{};
  hints.flags = PMinSize;
  hints.min_width = width;
  hints.min_height = height;
  XSetWMNormalHints(state_->display, state_->window, &hints);
}

void X11Window::present(cairo_surface_t* picture) {
  State& s = *state_;
  if (s.is_gone) return;
  const ErrorGuard guard(s.display);
  cairo_t* const context = cairo_create(s.surface);
  cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(context, picture, 0, 0);
  cairo_paint(context);
  cairo_destroy(context);
  cairo_surface_flush(s.surface);
}

}  // namespace channelstrip::window
