#include "golden.h"

#include <iterator>

namespace channelstrip::view_test {
namespace {

Part part_of(const Golden& golden) {
  const int width = static_cast<int>(kSize.width), height = static_cast<int>(kSize.height);
  if (golden.scale == 1) return {0, 0, width, height};
  const int quarter = static_cast<int>(golden.scene % 4);
  return {quarter % 2 * width, quarter / 2 * height, width, height};
}

}  // namespace

std::vector<Golden> all_goldens() {
  std::vector<Golden> all;
  for (std::size_t s = 0; s < std::size(kScenes); ++s) {
    for (const int scale : {1, 2}) all.push_back({s, scale});
  }
  return all;
}

std::string name_of(const Golden& golden) {
  return std::string(kScenes[golden.scene]) + "_" + std::to_string(golden.scale);
}

std::string path_of(const Golden& golden) {
  return CHANNELSTRIP_SOURCE_DIR "/tests/plugins/view/golden/" + name_of(golden) + ".png";
}

Image picture(const view::Model& model, const Part& part, double scale) {
  const view::Fonts fonts;
  return drawn(part, [&](cairo_t* context) { view::draw(context, fonts, model, kSize, scale); });
}

Image picture(const Golden& golden) {
  return picture(scene(kScenes[golden.scene]).model, part_of(golden), golden.scale);
}

}  // namespace channelstrip::view_test
