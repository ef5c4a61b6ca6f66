// What the view's binary offers to the plugin's: functions in C, as each has been compiled apart.

#pragma once

#include <cstdint>

namespace channelstrip::lv2 {

inline constexpr char kViewFile[] = "channelstrip-view.so";
inline constexpr char kSmallViewSymbol[] = "channelstrip_small_view";

struct SmallView {
  std::uint32_t version;  // kSmallViewVersion of the one that is loaded

  // Null without memory.
  void* (*make)();
  void (*free)(void* drawing);

  struct Model {
    std::uint32_t format;
    double sample_rate;
    const double* values;        // one per parameter, by index
    float compressor, expander;  // dB taken away
  };
  struct Pixels {
    unsigned char* data;
    int width, height, stride;
  };
  // Draws anew; the pixels stay until the next call. False if it can't.
  bool (*draw)(void* drawing, const Model* model, std::uint32_t width, std::uint32_t height,
               Pixels* pixels);
};
inline constexpr std::uint32_t kSmallViewVersion = 1;

using FindSmallView = const SmallView*();

}  // namespace channelstrip::lv2
