#include <cairo-ft.h>
#include <fontconfig/fontconfig.h>

#include <memory>
#include <string_view>

#include "canvas.h"

namespace channelstrip::view {
namespace {

struct DestroyPattern {
  void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, DestroyPattern>;

// What fontconfig takes for a family; it has the family's name only if it is installed.
Pattern matched(const char* family, int weight) {
  const Pattern wanted(FcPatternCreate());
  if (!wanted) return nullptr;
  FcPatternAddString(wanted.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(family));
  FcPatternAddInteger(wanted.get(), FC_WEIGHT, weight);
  FcPatternAddInteger(wanted.get(), FC_SLANT, FC_SLANT_ROMAN);
  FcPatternAddInteger(wanted.get(), FC_WIDTH, FC_WIDTH_NORMAL);
  FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
  FcDefaultSubstitute(wanted.get());
  FcResult result;
  return Pattern(FcFontMatch(nullptr, wanted.get(), &result));
}

bool is_family(const Pattern& pattern, std::string_view family) {
  FcChar8* name = nullptr;
  return pattern && FcPatternGetString(pattern.get(), FC_FAMILY, 0, &name) == FcResultMatch &&
         reinterpret_cast<const char*>(name) == family;
}

}  // namespace

// Neither hinting nor the desktop's own settings: the same picture everywhere.
Fonts::Fonts() {
  constexpr int kWeights[] = {FC_WEIGHT_REGULAR, FC_WEIGHT_MEDIUM, FC_WEIGHT_DEMIBOLD};
  for (int w = 0; w < 3; ++w) {
    Pattern pattern = matched("Inter", kWeights[w]);
    if (!is_family(pattern, "Inter")) {
      are_inter_ = false;
      pattern = matched("DejaVu Sans", kWeights[w]);
    }
    if (pattern) {
      const Pattern plain(FcPatternCreate());
      FcValue value;
      for (const char* property : {FC_FILE, FC_INDEX}) {
        if (FcPatternGet(pattern.get(), property, 0, &value) == FcResultMatch) {
          FcPatternAdd(plain.get(), property, value, FcTrue);
        }
      }
      FcPatternAddBool(plain.get(), FC_HINTING, FcFalse);
      FcPatternAddBool(plain.get(), FC_ANTIALIAS, FcTrue);
      faces_[w] = cairo_ft_font_face_create_for_pattern(plain.get());
    } else {
      faces_[w] =
          cairo_toy_font_face_create("sans", CAIRO_FONT_SLANT_NORMAL, CAIRO_FONT_WEIGHT_NORMAL);
    }
  }
}

Fonts::~Fonts() {
  for (cairo_font_face_t* face : faces_) cairo_font_face_destroy(face);
}

}  // namespace channelstrip::view
