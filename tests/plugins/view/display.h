// A display of X11 without a screen, Xvfb, and a user at it.

#pragma once

#include <cstdint>
#include <string>

namespace channelstrip::view_test {

struct Extent {
  int width = 0, height = 0;
};

// Runs while this lives; $DISPLAY names it. Throws std::runtime_error without Xvfb.
class Display {
 public:
  Display();
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;
  ~Display();

  // A window to embed others in, and its end.
  std::uint64_t make_window(int width, int height);
  void destroy_window(std::uint64_t window);
  // The only child of a window; 0 without one.
  std::uint64_t child_of(std::uint64_t window);

  // What a user does in a window, at once; points are in its pixels.
  void move(std::uint64_t window, double x, double y, unsigned int state = 0);
  void press(std::uint64_t window, double x, double y, unsigned int button = 1);
  void release(std::uint64_t window, double x, double y, unsigned int button = 1);
  void key(std::uint64_t window, const std::string& name, unsigned int state = 0);
  // The keyboard's focus.
  void focus(std::uint64_t window);
  std::uint64_t focused();
  // What a window tells of the least size that it can have (WM_NORMAL_HINTS); 0, 0 if nothing.
  Extent least_size(std::uint64_t window);
  // The colour of a pixel as it is seen, 0xRRGGBB.
  unsigned long pixel(std::uint64_t window, int x, int y);

 private:
  void* display_ = nullptr;
  int server_ = 0;
  unsigned long time_ = 1000;  // ms
};

// One for all tests.
Display& display();

}  // namespace channelstrip::view_test
