// Points and rectangles in logical pixels, from the top left.

#pragma once

namespace channelstrip::view {

struct Size {
  double width = 0, height = 0;
  bool operator==(const Size&) const = default;
};

struct Point {
  double x = 0, y = 0;
};

struct Rect {
  double x = 0, y = 0, width = 0, height = 0;

  double right() const { return x + width; }
  double bottom() const { return y + height; }
  Point centre() const { return {x + width / 2, y + height / 2}; }
  bool contains(Point p) const { return p.x >= x && p.x < right() && p.y >= y && p.y < bottom(); }
  Rect inset(double horizontally, double vertically) const {
    return {x + horizontally, y + vertically, width - 2 * horizontally, height - 2 * vertically};
  }

  // The part of this height at an edge; what is left is the rest.
  Rect cut_top(double part) {
    const Rect cut{x, y, width, part};
    y += part;
    height -= part;
    return cut;
  }
  Rect cut_bottom(double part) {
    height -= part;
    return {x, bottom(), width, part};
  }
  Rect cut_left(double part) {
    const Rect cut{x, y, part, height};
    x += part;
    width -= part;
    return cut;
  }
  Rect cut_right(double part) {
    width -= part;
    return {right(), y, part, height};
  }
};

}  // namespace channelstrip::view
