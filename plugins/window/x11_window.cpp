#include "x11_window.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xresource.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <cairo-xlib.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <stdexcept>

namespace channelstrip::window {
namespace {

constexpr long kEvents = ExposureMask | StructureNotifyMask | PointerMotionMask | ButtonPressMask |
                         ButtonReleaseMask | KeyPressMask | LeaveWindowMask;
constexpr Time kDoubleClick = 400;  // ms
constexpr double kNear = 5;         // pixels between the presses of a double click

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

Modifiers modifiers_of(unsigned int state) {
  return {.shift = (state & ShiftMask) != 0, .control = (state & ControlMask) != 0};
}

std::optional<Key> key_of(KeySym symbol) {
  switch (symbol) {
    case XK_Tab:
    case XK_ISO_Left_Tab:
      return Key::kTab;
    case XK_Return:
    case XK_KP_Enter:
      return Key::kEnter;
    case XK_Escape:
      return Key::kEscape;
    case XK_Up:
    case XK_KP_Up:
      return Key::kUp;
    case XK_Down:
    case XK_KP_Down:
      return Key::kDown;
    case XK_Left:
    case XK_KP_Left:
      return Key::kLeft;
    case XK_Right:
    case XK_KP_Right:
      return Key::kRight;
    case XK_BackSpace:
      return Key::kBackspace;
    case XK_Delete:
    case XK_KP_Delete:
      return Key::kDelete;
    case XK_space:
      return Key::kSpace;
    default:
      return std::nullopt;
  }
}

}  // namespace

struct X11Window::State {
  Display* display = nullptr;
  ::Window window = 0;
  cairo_surface_t* surface = nullptr;
  bool is_gone = false;
  Time pressed_at = 0;
  view::Point pressed_where;

  void press(const XButtonEvent& event, Events& events);
  void key(XKeyEvent& event, Events& events);
};

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

void X11Window::State::press(const XButtonEvent& event, Events& events) {
  const view::Point point{static_cast<double>(event.x), static_cast<double>(event.y)};
  const double time = static_cast<double>(event.time) / 1000;
  const Modifiers modifiers = modifiers_of(event.state);
  if (event.button == Button4 || event.button == Button5) {
    events.turned(point, event.button == Button4 ? 1 : -1, modifiers, time);
    return;
  }
  if (event.button != Button1) return;
  XSetInputFocus(display, window, RevertToParent, event.time);
  const bool is_second = pressed_at != 0 && event.time - pressed_at < kDoubleClick &&
                         std::hypot(point.x - pressed_where.x, point.y - pressed_where.y) < kNear;
  pressed_at = is_second ? 0 : event.time;
  pressed_where = point;
  events.pressed(point, is_second ? 2 : 1, modifiers);
}

void X11Window::State::key(XKeyEvent& event, Events& events) {
  char text[16] = "";
  KeySym symbol = NoSymbol;
  const int length = XLookupString(&event, text, sizeof text, &symbol, nullptr);
  const Modifiers modifiers = modifiers_of(event.state);
  if (const auto key = key_of(symbol)) {
    events.key_pressed(*key, modifiers, static_cast<double>(event.time) / 1000);
  } else if (modifiers.control && symbol >= XK_A && symbol <= XK_z) {
    const char letter = static_cast<char>(symbol);
    events.typed({&letter, 1}, modifiers);
  } else if (length == 1 && text[0] >= 0x20 && text[0] < 0x7f) {
    events.typed({text, 1}, modifiers);
  }
}

bool X11Window::dispatch(Events& events) {
  State& s = *state_;
  if (s.is_gone) return false;
  const ErrorGuard guard(s.display);
  while (XPending(s.display) > 0) {
    XEvent event;
    XNextEvent(s.display, &event);
    switch (event.type) {
      case MotionNotify:
        // Only the last of those that follow each other: what comes behind a press or a release
        // must stay behind it.
        while (XPending(s.display) > 0) {
          XEvent next;
          XPeekEvent(s.display, &next);
          if (next.type != MotionNotify) break;
          XNextEvent(s.display, &event);
        }
        events.moved({static_cast<double>(event.xmotion.x), static_cast<double>(event.xmotion.y)},
                     modifiers_of(event.xmotion.state));
        break;
      case LeaveNotify:
        events.left();
        break;
      case ButtonPress:
        s.press(event.xbutton, events);
        break;
      case ButtonRelease:
        if (event.xbutton.button == Button1) {
          events.released(
              {static_cast<double>(event.xbutton.x), static_cast<double>(event.xbutton.y)},
              modifiers_of(event.xbutton.state));
        }
        break;
      case KeyPress:
        s.key(event.xkey, events);
        break;
      case ConfigureNotify:
        cairo_xlib_surface_set_size(s.surface, event.xconfigure.width, event.xconfigure.height);
        events.resized(event.xconfigure.width, event.xconfigure.height);
        break;
      case Expose:
        if (event.xexpose.count == 0) events.exposed();
        break;
      case DestroyNotify:
        s.is_gone = true;
        return false;
      default:
        break;
    }
  }
  return true;
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
