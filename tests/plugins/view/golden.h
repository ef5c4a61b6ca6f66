// The pictures that are kept: what they show and where they are.

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

}  // namespace channelstrip::view_test
