// The colours. Texts have a contrast of at least 4.5 to 1 on the card that they stand on (WCAG 2.1,
// 1.4.3). The sections' accents are far apart for every kind of colour blindness, after Okabe and
// Ito's palette, made lighter for a dark ground; whatever they tell apart differs in shape, too.

#pragma once

#include <array>
#include <cstdint>

namespace channelstrip::view {

struct Colour {
  double red = 0, green = 0, blue = 0, alpha = 1;

  constexpr Colour with(double opacity) const { return {red, green, blue, opacity}; }
};

constexpr Colour rgb(std::uint32_t hex) {
  return {((hex >> 16) & 255) / 255.0, ((hex >> 8) & 255) / 255.0, (hex & 255) / 255.0, 1};
}

// `part` of `b` in `a`.
constexpr Colour mixed(Colour a, Colour b, double part) {
  return {a.red + part * (b.red - a.red), a.green + part * (b.green - a.green),
          a.blue + part * (b.blue - a.blue), a.alpha + part * (b.alpha - a.alpha)};
}

inline constexpr Colour kGround = rgb(0x0f1216), kCard = rgb(0x181c22), kPlot = rgb(0x11151a),
                        kField = rgb(0x262c35), kGrid = rgb(0x232933), kGridStrong = rgb(0x343c48),
                        kText = rgb(0xe8ebef), kLabel = rgb(0xa7b0bb), kFaint = rgb(0x86909c),
                        kUnused = rgb(0x4c545f), kWarning = rgb(0xf2b84b), kOver = rgb(0xff6a5c);

inline constexpr Colour kEqualiserAccent = rgb(0x5db8e8), kCompressorAccent = rgb(0xf0a23c),
                        kExpanderAccent = rgb(0x3fc7a0), kKeyAccent = rgb(0xd793c0);

// Of about the same lightness, as no band matters more than another.
inline constexpr std::array<Colour, 8> kBandColours{rgb(0xe9908c), rgb(0xe6a665), rgb(0xd3c263),
                                                    rgb(0x9dcc78), rgb(0x62cbb0), rgb(0x69bdf0),
                                                    rgb(0x9aa6f5), rgb(0xd395e2)};

}  // namespace channelstrip::view
