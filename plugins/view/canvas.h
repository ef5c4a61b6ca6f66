// What pictures are drawn with: cairo, in logical pixels, with lines that fall on device pixels.

#pragma once

#include <cairo.h>

#include <span>
#include <string_view>

#include "geometry.h"
#include "palette.h"

namespace channelstrip::view {

enum class Weight { kRegular, kMedium, kSemiBold };
enum class Align { kLeft, kCentre, kRight };

struct Type {
  double size = 12;
  Weight weight = Weight::kRegular;
  Colour colour = kText;
  Align align = Align::kLeft;
  double spacing = 0;  // between letters
};

// The faces of one family. The first of Inter, DejaVu Sans and whatever fontconfig takes for a
// sans-serif that is installed.
class Fonts {
 public:
  Fonts();
  Fonts(const Fonts&) = delete;
  Fonts& operator=(const Fonts&) = delete;
  ~Fonts();

  cairo_font_face_t* face(Weight weight) const { return faces_[static_cast<int>(weight)]; }
  bool are_inter() const { return are_inter_; }

 private:
  cairo_font_face_t* faces_[3] = {};
  bool are_inter_ = true;
};

class Canvas {
 public:
  // Draws `scale` device pixels for each logical one. All must outlive it.
  Canvas(cairo_t* context, const Fonts& fonts, double scale);
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;
  ~Canvas();

  cairo_t* context() const { return context_; }
  // The nearest edge between device pixels.
  double snapped(double coordinate) const;
  double hairline() const { return hairline_; }

  void fill(const Rect& rect, Colour colour);  // its edges snapped
  void fill_rounded(const Rect& rect, double radius, Colour colour);
  void outline_rounded(const Rect& rect, double radius, Colour colour, double width);
  void fill_circle(Point centre, double radius, Colour colour);
  void outline_circle(Point centre, double radius, Colour colour, double width);
  void horizontal(double x1, double x2, double y, Colour colour);  // hairlines
  void vertical(double x, double y1, double y2, Colour colour);

  // Through points; one that isn't finite breaks it.
  void line(std::span<const Point> points, Colour colour, double width,
            std::span<const double> dashes = {});
  // Between the points, in order of x, and y of a base.
  void area(std::span<const Point> points, double base, Colour colour);
  void polygon(std::span<const Point> points, Colour colour);

  // On a baseline at point.y. Digits are as wide as each other.
  void text(Point point, std::string_view text, const Type& type);
  double width_of(std::string_view text, const Type& type);

  // Nothing is drawn outside until it ends.
  class Clip {
   public:
    Clip(Canvas& canvas, const Rect& rect);
    Clip(const Clip&) = delete;
    Clip& operator=(const Clip&) = delete;
    ~Clip();

   private:
    cairo_t* context_;
  };

 private:
  void set(Colour colour);
  void path(std::span<const Point> points, bool is_area, double base);
  void rounded_path(const Rect& rect, double radius);
  class Glyphs;

  cairo_t* context_;
  const Fonts& fonts_;
  double scale_, hairline_;
};

}  // namespace channelstrip::view
