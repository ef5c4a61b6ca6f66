// Texts: glyph by glyph, as English and numbers need no shaping.

#include <array>
#include <string>

#include "canvas.h"

namespace channelstrip::view {

// A text's glyphs, from an origin of 0. Digits have the widest digit's advance, so that numbers
// don't move about as they change.
class Canvas::Glyphs {
 public:
  Glyphs(Canvas& canvas, std::string_view text, const Type& type) {
    cairo_t* const context = canvas.context_;
    cairo_set_font_face(context, canvas.fonts_.face(type.weight));
    cairo_set_font_size(context, type.size);
    cairo_scaled_font_t* const font = cairo_get_scaled_font(context);
    all_ = buffer_.data();
    count_ = static_cast<int>(buffer_.size());
    if (cairo_scaled_font_text_to_glyphs(font, 0, 0, text.data(), static_cast<int>(text.size()),
                                         &all_, &count_, nullptr, nullptr,
                                         nullptr) != CAIRO_STATUS_SUCCESS) {
      count_ = 0;
      return;
    }
    cairo_text_extents_t extents;
    cairo_scaled_font_text_extents(font, "0", &extents);
    const double digit = extents.x_advance;
    std::string_view rest = text;
    for (int g = 0; g < count_; ++g) {
      cairo_scaled_font_glyph_extents(font, &all_[g], 1, &extents);
      const double advance = extents.x_advance;
      const bool is_digit = !rest.empty() && rest.front() >= '0' && rest.front() <= '9';
      all_[g].x = width_ + (is_digit ? (digit - advance) / 2 : 0);
      all_[g].y = 0;
      width_ += (is_digit ? digit : advance) + type.spacing;
      // To the next character of UTF-8.
      if (!rest.empty()) rest.remove_prefix(1);
      while (!rest.empty() && (rest.front() & 0xC0) == 0x80) rest.remove_prefix(1);
    }
    width_ -= type.spacing;
  }
  Glyphs(const Glyphs&) = delete;
  Glyphs& operator=(const Glyphs&) = delete;
  ~Glyphs() {
    if (all_ != buffer_.data()) cairo_glyph_free(all_);
  }

  double width() const { return width_; }
  void show(cairo_t* context, Point at) {
    for (int g = 0; g < count_; ++g) {
      all_[g].x += at.x;
      all_[g].y += at.y;
    }
    cairo_show_glyphs(context, all_, count_);
  }

 private:
  std::array<cairo_glyph_t, 96> buffer_;
  cairo_glyph_t* all_;
  int count_ = 0;
  double width_ = 0;
};

void Canvas::text(Point point, std::string_view text, const Type& type) {
  if (text.empty()) return;
  Glyphs glyphs(*this, text, type);
  double x = point.x;
  if (type.align == Align::kCentre) x -= glyphs.width() / 2;
  if (type.align == Align::kRight) x -= glyphs.width();
  set(type.colour);
  glyphs.show(context_, {snapped(x), snapped(point.y)});
}

double Canvas::width_of(std::string_view text, const Type& type) {
  return text.empty() ? 0 : Glyphs(*this, text, type).width();
}

}  // namespace channelstrip::view
