// The window as an LV2 UI: what it sets goes to the host as control ports, what the host has comes
// from there. Samples and meters come from the plugin's instance where the host gives access to it,
// and else meters from the ports that are notified.

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/options/options.h>
#include <lv2/parameters/parameters.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>

#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "../view/parameters.h"
#include "../window/table.h"
#include "control_value.h"
#include "instance.h"
#include "ports.h"

namespace channelstrip::lv2 {
namespace {

const window::WindowTable& table() {
  return window::window_table();
}

std::uint32_t format_of(const char* uri) {
  for (std::uint32_t f = 0; f < channelstrip_format_count(); ++f) {
    if (uri_of(f) == uri) return f;
  }
  throw std::invalid_argument("no such plugin");
}

std::uint32_t channel_count(std::uint32_t format) {
  channelstrip_format info{};
  channelstrip_format_info(format, &info, sizeof info);
  return info.channels;
}

// What a host gives with a feature; null where it doesn't offer it.
void* feature(const LV2_Feature* const* features, std::string_view uri) {
  for (; features && *features; ++features) {
    if ((*features)->URI == uri) return (*features)->data;
  }
  return nullptr;
}

// A float among the host's options.
std::optional<double> option(const LV2_Options_Option* options, const LV2_URID_Map* map,
                             const char* uri) {
  if (!options || !map) return std::nullopt;
  const LV2_URID key = map->map(map->handle, uri);
  const LV2_URID type = map->map(map->handle, LV2_ATOM__Float);
  for (const LV2_Options_Option* o = options; o->key != 0 || o->value; ++o) {
    if (o->key != key || o->type != type || o->size != sizeof(float)) continue;
    float value = 0;
    std::memcpy(&value, o->value, sizeof value);
    return static_cast<double>(value);
  }
  return std::nullopt;
}

class Ui {
 public:
  Ui(const char* plugin, LV2UI_Write_Function write, LV2UI_Controller controller,
     const LV2_Feature* const* features)
      : format_(format_of(plugin)),
        ports_(channel_count(format_)),
        write_(write),
        controller_(controller),
        touch_(static_cast<const LV2UI_Touch*>(feature(features, LV2_UI__touch))) {
    const auto& all = view::parameters().all;
    for (std::uint32_t i = 0; i < kPortParameterCount; ++i) {
      const std::size_t index = view::parameters().index_of(port_parameters()[i].symbol);
      parameters_[i] = index;
    }
    port_of_.resize(all.size(), ports_.enabled());
    for (std::uint32_t i = 0; i < kPortParameterCount; ++i) {
      port_of_[parameters_[i]] = ports_.first_parameter() + i;
    }

    const auto* map = static_cast<const LV2_URID_Map*>(feature(features, LV2_URID__map));
    const auto* options =
        static_cast<const LV2_Options_Option*>(feature(features, LV2_OPTIONS__options));
    auto* const instance = static_cast<Instance*>(feature(features, LV2_INSTANCE_ACCESS_URI));
    const window::WindowOptions wanted{
        .parent = reinterpret_cast<std::uintptr_t>(feature(features, LV2_UI__parent)),
        .scale = option(options, map, LV2_UI__scaleFactor).value_or(0),
        .format = format_,
        .sample_rate = instance ? instance->sample_rate()
                                : option(options, map, LV2_PARAMETERS__sampleRate).value_or(48000),
        .tap = instance ? &instance->tap() : nullptr,
        .host = {
            .self = this,
            .begin = [](void* self, std::uint32_t p) { static_cast<Ui*>(self)->touch(p, true); },
            .set = [](void* self, std::uint32_t p,
                      double value) { static_cast<Ui*>(self)->set(p, value); },
            .end = [](void* self, std::uint32_t p) { static_cast<Ui*>(self)->touch(p, false); }}};
    window_.reset(table().open(&wanted));
    if (!window_) throw std::runtime_error("no window");
    table().show(window_.get(), true);
    const auto* resize = static_cast<const LV2UI_Resize*>(feature(features, LV2_UI__resize));
    if (resize) {
      std::uint32_t width = 0, height = 0;
      table().size(window_.get(), &width, &height);
      resize->ui_resize(resize->handle, static_cast<int>(width), static_cast<int>(height));
    }
  }

  LV2UI_Widget widget() const {
    return std::bit_cast<LV2UI_Widget>(static_cast<std::uintptr_t>(table().id(window_.get())));
  }
  int idle() {
    if (has_peaks_) table().set_meters(window_.get(), &peaks_);
    has_peaks_ = false;
    return table().idle(window_.get()) ? 0 : 1;
  }
  int resize(int width, int height) {
    if (width <= 0 || height <= 0) return 1;
    table().resize(window_.get(), static_cast<std::uint32_t>(width),
                   static_cast<std::uint32_t>(height));
    return 0;
  }

  void notice(std::uint32_t port, float value) {
    if (!std::isfinite(value)) return;
    if (port == ports_.enabled()) {
      const std::size_t bypass = view::parameters().bypass;
      table().set_value(window_.get(), static_cast<std::uint32_t>(bypass), value > 0 ? 0 : 1);
    } else if (port >= ports_.first_parameter()) {
      const std::uint32_t at = port - ports_.first_parameter();
      if (at >= kPortParameterCount) return;
      table().set_value(window_.get(), static_cast<std::uint32_t>(parameters_[at]),
                        decimal_of(value));
    } else if (port >= ports_.first_meter()) {
      notice_meter(port - ports_.first_meter(), std::pow(10.0f, value / 20));
    }
  }

 private:
  struct Close {
    void operator()(void* window) const { table().close(window); }
  };

  void notice_meter(std::uint32_t meter, float linear) {
    has_peaks_ = true;
    if (meter < ports_.channels()) {
      peaks_.input_peak[meter] = linear;
    } else if (meter < 2 * ports_.channels()) {
      peaks_.output_peak[meter - ports_.channels()] = linear;
    } else if (meter == ports_.compressor_reduction()) {
      peaks_.compressor_reduction = 1 - 1 / linear;
    } else {
      peaks_.expander_reduction = 1 - 1 / linear;
    }
  }
  void touch(std::uint32_t parameter, bool is_held) {
    if (touch_) touch_->touch(touch_->handle, port_of_[parameter], is_held);
  }
  void set(std::uint32_t parameter, double value) {
    const std::uint32_t port = port_of_[parameter];
    const auto sent = static_cast<float>(port == ports_.enabled() ? 1 - value : value);
    write_(controller_, port, sizeof sent, 0, &sent);
  }

  std::uint32_t format_;
  Ports ports_;
  LV2UI_Write_Function write_;
  LV2UI_Controller controller_;
  const LV2UI_Touch* touch_;
  std::array<std::size_t, kPortParameterCount> parameters_;  // by port
  std::vector<std::uint32_t> port_of_;                       // by parameter
  channelstrip_meters peaks_ = {};
  bool has_peaks_ = false;
  std::unique_ptr<void, Close> window_;
};

Ui& ui_of(LV2UI_Handle handle) {
  return *static_cast<Ui*>(handle);
}

const LV2UI_Idle_Interface kIdle{.idle = [](LV2UI_Handle handle) { return ui_of(handle).idle(); }};
const LV2UI_Resize kResize{.handle = nullptr,
                           .ui_resize = [](LV2UI_Feature_Handle handle, int width, int height) {
                             return handle ? ui_of(handle).resize(width, height) : 1;
                           }};

const LV2UI_Descriptor kUi{
    .URI = kUiUri,
    .instantiate = [](const LV2UI_Descriptor*, const char* plugin, const char* /*bundle*/,
                      LV2UI_Write_Function write, LV2UI_Controller controller, LV2UI_Widget* widget,
                      const LV2_Feature* const* features) -> LV2UI_Handle {
      try {
        auto ui = std::make_unique<Ui>(plugin, write, controller, features);
        *widget = ui->widget();
        return ui.release();
      } catch (const std::exception&) {
        return nullptr;
      }
    },
    .cleanup = [](LV2UI_Handle handle) { delete &ui_of(handle); },
    .port_event =
        [](LV2UI_Handle handle, std::uint32_t port, std::uint32_t size, std::uint32_t protocol,
           const void* value) {
          if (protocol != 0 || size != sizeof(float)) return;
          float number = 0;
          std::memcpy(&number, value, sizeof number);
          ui_of(handle).notice(port, number);
        },
    .extension_data = [](const char* uri) -> const void* {
      const std::string_view wanted = uri;
      if (wanted == LV2_UI__idleInterface) return &kIdle;
      if (wanted == LV2_UI__resize) return &kResize;
      return nullptr;
    }};

}  // namespace
}  // namespace channelstrip::lv2

LV2_SYMBOL_EXPORT const LV2UI_Descriptor* lv2ui_descriptor(std::uint32_t index) {
  return index == 0 ? &channelstrip::lv2::kUi : nullptr;
}
