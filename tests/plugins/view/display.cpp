#include "display.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>

namespace channelstrip::view_test {
namespace {

::Display* of(void* display) {
  return static_cast<::Display*>(display);
}

}  // namespace

Display::Display() {
  std::array<int, 2> numbers{};
  if (pipe(numbers.data()) != 0) throw std::runtime_error("no pipe");
  server_ = fork();
  if (server_ == 0) {
    const int quiet = open("/dev/null", O_WRONLY);
    dup2(quiet, 1);
    dup2(quiet, 2);
    dup2(numbers[1], 3);
    execlp("Xvfb", "Xvfb", "-displayfd", "3", "-screen", "0", "1600x1200x24", "-nolisten", "tcp",
           nullptr);
    _exit(127);
  }
  close(numbers[1]);
  // The number comes with a newline, in one piece or several.
  std::string number;
  for (char c = 0; read(numbers[0], &c, 1) == 1 && c != '\n';) number += c;
  close(numbers[0]);
  if (number.empty()) throw std::runtime_error("Xvfb doesn't run: Debian's package xvfb");
  setenv("DISPLAY", (":" + number).c_str(), 1);
  display_ = XOpenDisplay(nullptr);
  if (!display_) throw std::runtime_error("no display");
}

Display::~Display() {
  if (display_) XCloseDisplay(of(display_));
  kill(server_, SIGTERM);
  waitpid(server_, nullptr, 0);
}

std::uint64_t Display::make_window(int width, int height) {
  const ::Window made =
      XCreateSimpleWindow(of(display_), DefaultRootWindow(of(display_)), 0, 0,
                          static_cast<unsigned>(width), static_cast<unsigned>(height), 0, 0, 0);
  XMapWindow(of(display_), made);
  XSync(of(display_), False);
  return made;
}

void Display::destroy_window(std::uint64_t window) {
  XDestroyWindow(of(display_), window);
  XSync(of(display_), False);
}

std::uint64_t Display::child_of(std::uint64_t window) {
  ::Window root = 0, parent = 0, *children = nullptr;
  unsigned int count = 0;
  XQueryTree(of(display_), window, &root, &parent, &children, &count);
  const std::uint64_t child = count == 1 ? children[0] : 0;
  if (children) XFree(children);
  return child;
}

void Display::move(std::uint64_t window, double x, double y, unsigned int state) {
  XEvent event{};
  event.xmotion = {.type = MotionNotify,
                   .serial = 0,
                   .send_event = True,
                   .display = of(display_),
                   .window = window,
                   .root = DefaultRootWindow(of(display_)),
                   .subwindow = 0,
                   .time = time_ += 10,
                   .x = static_cast<int>(x),
                   .y = static_cast<int>(y),
                   .x_root = 0,
                   .y_root = 0,
                   .state = state,
                   .is_hint = 0,
                   .same_screen = True};
  XSendEvent(of(display_), window, False, PointerMotionMask, &event);
  XSync(of(display_), False);
}

namespace {

XEvent button_event(::Display* display, int type, std::uint64_t window, double x, double y,
                    unsigned int button, unsigned long time) {
  XEvent event{};
  event.xbutton = {.type = type,
                   .serial = 0,
                   .send_event = True,
                   .display = display,
                   .window = window,
                   .root = DefaultRootWindow(display),
                   .subwindow = 0,
                   .time = time,
                   .x = static_cast<int>(x),
                   .y = static_cast<int>(y),
                   .x_root = 0,
                   .y_root = 0,
                   .state = 0,
                   .button = button,
                   .same_screen = True};
  return event;
}

}  // namespace

// Long after what was before: no double click.
void Display::press(std::uint64_t window, double x, double y, unsigned int button) {
  XEvent event = button_event(of(display_), ButtonPress, window, x, y, button, time_ += 1000);
  XSendEvent(of(display_), window, False, ButtonPressMask, &event);
  XSync(of(display_), False);
}

void Display::release(std::uint64_t window, double x, double y, unsigned int button) {
  XEvent event = button_event(of(display_), ButtonRelease, window, x, y, button, time_ += 10);
  XSendEvent(of(display_), window, False, ButtonReleaseMask, &event);
  XSync(of(display_), False);
}

void Display::key(std::uint64_t window, const std::string& name, unsigned int state) {
  XEvent event{};
  const KeySym symbol = XStringToKeysym(name.c_str());
  event.xkey = {.type = KeyPress,
                .serial = 0,
                .send_event = True,
                .display = of(display_),
                .window = window,
                .root = DefaultRootWindow(of(display_)),
                .subwindow = 0,
                .time = time_ += 10,
                .x = 0,
                .y = 0,
                .x_root = 0,
                .y_root = 0,
                .state = state,
                .keycode = XKeysymToKeycode(of(display_), symbol),
                .same_screen = True};
  XSendEvent(of(display_), window, False, KeyPressMask, &event);
  XSync(of(display_), False);
}

void Display::focus(std::uint64_t window) {
  XSetInputFocus(of(display_), window, RevertToParent, CurrentTime);
  XSync(of(display_), False);
}

std::uint64_t Display::focused() {
  ::Window window = 0;
  int revert = 0;
  XGetInputFocus(of(display_), &window, &revert);
  return window;
}

Extent Display::least_size(std::uint64_t window) {
  XSizeHints hints{};
  long supplied = 0;
  if (!XGetWMNormalHints(of(display_), window, &hints, &supplied)) return {};
  if (!(hints.flags & PMinSize)) return {};
  return {hints.min_width, hints.min_height};
}

unsigned long Display::pixel(std::uint64_t window, int x, int y) {
  XImage* const image = XGetImage(of(display_), window, x, y, 1, 1, AllPlanes, ZPixmap);
  if (!image) throw std::runtime_error("no pixel");
  const unsigned long colour = XGetPixel(image, 0, 0) & 0xffffff;
  XDestroyImage(image);
  return colour;
}

Display& display() {
  static Display one;
  return one;
}

}  // namespace channelstrip::view_test
