// What is kept: pictures, and where a hand finds things in a window.

#pragma once

#include <string>
#include <vector>

#include "image.h"
#include "scenes.h"

namespace channelstrip::view_test {

inline constexpr view::Size kSize = view::kLeastSize;

struct Golden {
  std::size_t scene;  // of kScenes
  int scale;
};
// Whole pictures at scale 1 and a quarter at scale 2, of each scene another.
std::vector<Golden> all_goldens();

std::string name_of(const Golden& golden);
std::string path_of(const Golden& golden);
Image picture(const Golden& golden);
// A part of a model's picture.
Image picture(const view::Model& model, const Part& part, double scale);

// Where handles and values stand in a window of the usual size that shows the preset voice on a
// Stereo strip, in whole pixels; script/check-hosts uses windows in other programs by it.
std::string points();
std::string path_of_points();

}  // namespace channelstrip::view_test
