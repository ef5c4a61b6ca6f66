// The small picture that a host shows in its mixer, by the extension
// http://harrisonconsoles.com/lv2/inlinedisplay as its public documentation describes it.

#pragma once

#include <lv2/core/lv2.h>

#include <cstdint>
#include <memory>
#include <string>

#include "glance.h"
#include "small_view.h"

namespace channelstrip::lv2 {

inline constexpr char kInlineDisplayInterface[] =
    "http://harrisonconsoles.com/lv2/inlinedisplay#interface";
inline constexpr char kInlineDisplayQueueDraw[] =
    "http://harrisonconsoles.com/lv2/inlinedisplay#queue_draw";

// Pixels as cairo's ARGB32 has them.
struct ImageSurface {
  unsigned char* data;
  int width, height, stride;  // the stride in bytes
};
// Of the plugin: draws in at most that many pixels; null for nothing to show. It is called on a
// thread that isn't the audio thread, beside it; the pixels are the plugin's until it is called
// again.
struct InlineDisplayInterface {
  ImageSurface* (*render)(LV2_Handle instance, std::uint32_t width, std::uint32_t height);
};
// Of the host: the plugin's audio thread asks it to call render() soon.
struct InlineDisplay {
  void* handle;
  void (*queue_draw)(void* handle);
};

// Draws by the view's binary beside the plugin's own, so that the plugin itself needs no library of
// pictures. There is no picture where that binary or what it needs is missing.
class SmallPicture {
 public:
  // The glance must outlive it.
  SmallPicture(std::uint32_t format, double sample_rate, const Glance& glance, const char* bundle);
  SmallPicture(const SmallPicture&) = delete;
  SmallPicture& operator=(const SmallPicture&) = delete;
  ~SmallPicture();

  ImageSurface* draw(std::uint32_t width, std::uint32_t height);

 private:
  std::uint32_t format_;
  double sample_rate_;
  const Glance& glance_;
  std::string path_;
  bool is_loaded_ = false;  // or couldn't be
  const SmallView* view_ = nullptr;
  void* drawing_ = nullptr;
  ImageSurface surface_ = {};
};

}  // namespace channelstrip::lv2
