#include "golden.h"

#include <cmath>
#include <iterator>
#include <sstream>

namespace channelstrip::view_test {
namespace {

constexpr char kFolder[] = CHANNELSTRIP_SOURCE_DIR "/tests/plugins/view/golden/";

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
  return kFolder + name_of(golden) + ".png";
}

Image picture(const view::Model& model, const Part& part, double scale) {
  const view::Fonts fonts;
  return drawn(part, [&](cairo_t* context) { view::draw(context, fonts, model, kSize, scale); });
}

Image picture(const Golden& golden) {
  return picture(scene(kScenes[golden.scene]).model, part_of(golden), golden.scale);
}

std::string points() {
  const view::Layout layout = view::layout_of(
      view::kUsualSize,
      view::setup_of(preset("voice").get(), plugin_test::format_of("Stereo"), plugin_test::kRate));
  std::ostringstream text;
  const auto add = [&](const std::string& name, view::Point point) {
    text << name << ' ' << std::lround(point.x) << ' ' << std::lround(point.y) << '\n';
  };
  add("window", {layout.size.width, layout.size.height});
  add("title", layout.title.centre());
  for (std::size_t b = 0; b < layout.handles.size(); ++b) {
    add("handle" + std::to_string(b + 1), layout.handles[b]);
  }
  for (const view::Cell& cell : layout.cells) {
    add(view::parameters().all[cell.parameter].symbol, cell.box.centre());
  }
  return text.str();
}

std::string path_of_points() {
  return std::string(kFolder) + "points.txt";
}

}  // namespace channelstrip::view_test
