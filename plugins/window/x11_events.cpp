// The window's events in logical terms.

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/keysym.h>
#include <cairo-xlib.h>

#include <cmath>
#include <optional>

#include "x11_state.h"

namespace channelstrip::window {
namespace {

constexpr Time kDoubleClick = 400;  // ms
constexpr double kNear = 5;         // pixels between the presses of a double click
constexpr int kClaims = 10;         // of some 30 ms each

// The window on the screen that a window is in.
::Window outermost(Display* display, ::Window window) {
  for (;;) {
    ::Window root = 0, parent = 0, *children = nullptr;
    unsigned int count = 0;
    if (!XQueryTree(display, window, &root, &parent, &children, &count)) return window;
    if (children) XFree(children);
    if (parent == None || parent == root) return window;
    window = parent;
  }
}

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

// A press makes the window manager activate the host's window, and the host, told of that, takes
// the focus, at any time after the press. So it is fetched back for as long as that may take;
// later, a host that takes it means it. Nothing is taken from other windows on the screen.
void X11Window::State::keep_focus() {
  if (claims == 0) return;
  --claims;
  ::Window focused = 0;
  int revert = 0;
  XGetInputFocus(display, &focused, &revert);
  if (focused == window) return;
  const bool is_nowhere =
      focused == None || focused == PointerRoot || focused == DefaultRootWindow(display);
  if (!is_nowhere && outermost(display, focused) != outermost(display, window)) return;
  XSetInputFocus(display, window, RevertToParent, CurrentTime);
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
  claims = kClaims;
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
  s.keep_focus();
  return true;
}

}  // namespace channelstrip::window
