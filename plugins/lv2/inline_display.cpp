#include "inline_display.h"

#include <dlfcn.h>

#include <vector>

#include "control_value.h"

namespace channelstrip::lv2 {
namespace {

// The binary stays loaded as long as the program runs: others may draw by it, too.
const SmallView* loaded_view(const std::string& path) {
  void* const binary = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!binary) return nullptr;
  const auto find = reinterpret_cast<FindSmallView*>(dlsym(binary, kSmallViewSymbol));
  const SmallView* const view = find ? find() : nullptr;
  if (view && view->version == kSmallViewVersion) return view;
  dlclose(binary);
  return nullptr;
}

}  // namespace

SmallPicture::SmallPicture(std::uint32_t format, double sample_rate, const Glance& glance,
                           const char* bundle)
    : format_(format), sample_rate_(sample_rate), glance_(glance) {
  if (!bundle) return;
  path_ = bundle;
  if (!path_.ends_with('/')) path_ += '/';
  path_ += kViewFile;
}

SmallPicture::~SmallPicture() {
  if (drawing_) view_->free(drawing_);
}

ImageSurface* SmallPicture::draw(std::uint32_t width, std::uint32_t height) {
  if (!is_loaded_) {
    is_loaded_ = true;
    if (!path_.empty()) view_ = loaded_view(path_);
    if (view_) drawing_ = view_->make();
  }
  if (!view_ || !drawing_) return nullptr;
  std::vector<double> values(channelstrip_parameter_count());
  for (std::uint32_t i = 0, port = 0; i < values.size(); ++i) {
    channelstrip_parameter p{};
    channelstrip_parameter_info(i, &p, sizeof p);
    if (port < kPortParameterCount && p.id == port_parameters()[port].id) {
      values[i] = decimal_of(glance_.control(port++));
    } else {  // the only one that isn't a port is the bypass
      values[i] = glance_.control(kPortParameterCount) > 0 ? 0 : 1;
    }
  }
  const SmallView::Model model{.format = format_,
                               .sample_rate = sample_rate_,
                               .values = values.data(),
                               .compressor = glance_.compressor(),
                               .expander = glance_.expander()};
  SmallView::Pixels pixels{};
  if (!view_->draw(drawing_, &model, width, height, &pixels)) return nullptr;
  surface_ = {pixels.data, pixels.width, pixels.height, pixels.stride};
  return &surface_;
}

}  // namespace channelstrip::lv2
