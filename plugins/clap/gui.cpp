#include "gui.h"

#include <dlfcn.h>

#include <algorithm>

#include "instance.h"

namespace channelstrip::clap {
namespace {

constexpr std::uint32_t kPeriod = 30;  // ms

std::string& folder() {
  static std::string path;
  return path;
}

// Null without it. It stays loaded as long as the program runs.
const window::WindowTable* found_table() {
  if (folder().empty()) return nullptr;
  void* const binary = dlopen((folder() + window::kViewFile).c_str(), RTLD_NOW | RTLD_LOCAL);
  if (!binary) return nullptr;
  const auto find = reinterpret_cast<window::FindWindow*>(dlsym(binary, window::kWindowSymbol));
  const window::WindowTable* const table = find ? find() : nullptr;
  if (table && table->version == window::kWindowVersion &&
      table->tap_size == sizeof(plugins::Tap)) {
    return table;
  }
  dlclose(binary);
  return nullptr;
}

const window::WindowTable* table() {
  static const window::WindowTable* const found = found_table();
  return found;
}

Gui& gui_of(const clap_plugin_t* plugin) {
  return instance_of(plugin).gui();
}

bool is_x11(const char* api, bool is_floating) {
  return api && std::string_view(api) == CLAP_WINDOW_API_X11 && !is_floating;
}

}  // namespace

void set_binary_path(const char* path) {
  const std::string_view whole = path ? path : "";
  const std::size_t slash = whole.rfind('/');
  folder() = slash == std::string_view::npos ? "" : whole.substr(0, slash + 1);
}

bool Gui::is_there() {
  return table() != nullptr;
}

bool Gui::create() {
  if (!table() || window_) return false;
  const window::WindowOptions options{
      .parent = 0,
      .scale = 0,
      .format = instance_.format(),
      .sample_rate = instance_.sample_rate(),
      .tap = &instance_.tap(),
      .host = {.self = this,
               .begin =
                   [](void* self, std::uint32_t p) {
                     static_cast<Gui*>(self)->put(CLAP_EVENT_PARAM_GESTURE_BEGIN, p, 0);
                   },
               .set =
                   [](void* self, std::uint32_t p, double value) {
                     static_cast<Gui*>(self)->put(CLAP_EVENT_PARAM_VALUE, p, value);
                   },
               .end =
                   [](void* self, std::uint32_t p) {
                     static_cast<Gui*>(self)->put(CLAP_EVENT_PARAM_GESTURE_END, p, 0);
                   }}};
  window_ = {table()->open(&options), Close{table()}};
  if (!window_) return false;
  show_values();
  timers_ = static_cast<const clap_host_timer_support_t*>(
      host_->get_extension(host_, CLAP_EXT_TIMER_SUPPORT));
  if (!timers_ || !timers_->register_timer(host_, kPeriod, &timer_)) timers_ = nullptr;
  return true;
}

void Gui::destroy() {
  if (!window_) return;
  if (timers_) timers_->unregister_timer(host_, timer_);
  timers_ = nullptr;
  window_.reset();
}

bool Gui::set_scale(double scale) {
  if (window_) table()->set_scale(window_.get(), scale);
  return window_ != nullptr;
}

bool Gui::size(std::uint32_t& width, std::uint32_t& height) const {
  if (window_) table()->size(window_.get(), &width, &height);
  return window_ != nullptr;
}

bool Gui::adjust(std::uint32_t& width, std::uint32_t& height) const {
  if (!window_) return false;
  std::uint32_t least_width = 0, least_height = 0;
  table()->least_size(window_.get(), &least_width, &least_height);
  width = std::max(width, least_width);
  height = std::max(height, least_height);
  return true;
}

bool Gui::resize(std::uint32_t width, std::uint32_t height) {
  if (window_) table()->resize(window_.get(), width, height);
  return window_ != nullptr;
}

bool Gui::set_parent(std::uint64_t parent) {
  if (window_) table()->set_parent(window_.get(), parent);
  return window_ != nullptr;
}

bool Gui::show(bool is_shown) {
  if (window_) table()->show(window_.get(), is_shown);
  return window_ != nullptr;
}

// What the host has changed, then the picture.
void Gui::tick() {
  if (!window_) return;
  table()->set_stream(window_.get(), instance_.format(), instance_.sample_rate());
  show_values();
  table()->idle(window_.get());
}

// While an edit is on its way, the values of the strip are older than the window's.
void Gui::show_values() {
  const channelstrip_settings* const settings =
      instance_.edits().are_taken() ? instance_.settings() : nullptr;
  for (std::uint32_t i = 0; i < values_.size(); ++i) {
    channelstrip_parameter p{};
    channelstrip_parameter_info(i, &p, sizeof p);
    if (settings) channelstrip_settings_get(settings, p.id, &values_[i]);
    table()->set_value(window_.get(), i, values_[i]);
  }
}

void Gui::put(std::uint16_t type, std::uint32_t parameter, double value) {
  channelstrip_parameter p{};
  channelstrip_parameter_info(parameter, &p, sizeof p);
  if (!instance_.edits().put({type, p.id, value})) return;
  if (type == CLAP_EVENT_PARAM_VALUE) values_[parameter] = value;
  const auto* host_parameters =
      static_cast<const clap_host_params_t*>(host_->get_extension(host_, CLAP_EXT_PARAMS));
  if (host_parameters && host_parameters->request_flush) host_parameters->request_flush(host_);
}

const clap_plugin_gui_t kGui{
    .is_api_supported =
        [](const clap_plugin_t*, const char* api, bool is_floating) {
          return is_x11(api, is_floating) && Gui::is_there();
        },
    .get_preferred_api =
        [](const clap_plugin_t*, const char** api, bool* is_floating) {
          *api = CLAP_WINDOW_API_X11;
          *is_floating = false;
          return Gui::is_there();
        },
    .create = [](const clap_plugin_t* plugin, const char* api,
                 bool is_floating) { return is_x11(api, is_floating) && gui_of(plugin).create(); },
    .destroy = [](const clap_plugin_t* plugin) { gui_of(plugin).destroy(); },
    .set_scale = [](const clap_plugin_t* plugin,
                    double scale) { return gui_of(plugin).set_scale(scale); },
    .get_size = [](const clap_plugin_t* plugin, std::uint32_t* width,
                   std::uint32_t* height) { return gui_of(plugin).size(*width, *height); },
    .can_resize = [](const clap_plugin_t*) { return true; },
    .get_resize_hints =
        [](const clap_plugin_t*, clap_gui_resize_hints_t* hints) {
          *hints = {};
          hints->can_resize_horizontally = hints->can_resize_vertically = true;
          return true;
        },
    .adjust_size = [](const clap_plugin_t* plugin, std::uint32_t* width,
                      std::uint32_t* height) { return gui_of(plugin).adjust(*width, *height); },
    .set_size = [](const clap_plugin_t* plugin, std::uint32_t width,
                   std::uint32_t height) { return gui_of(plugin).resize(width, height); },
    .set_parent =
        [](const clap_plugin_t* plugin, const clap_window_t* parent) {
          return is_x11(parent->api, false) && gui_of(plugin).set_parent(parent->x11);
        },
    .set_transient = [](const clap_plugin_t*, const clap_window_t*) { return false; },
    .suggest_title = [](const clap_plugin_t*, const char*) {},
    .show = [](const clap_plugin_t* plugin) { return gui_of(plugin).show(true); },
    .hide = [](const clap_plugin_t* plugin) { return gui_of(plugin).show(false); }};

const clap_plugin_timer_support_t kTimer{
    .on_timer = [](const clap_plugin_t* plugin, clap_id) { gui_of(plugin).tick(); }};

}  // namespace channelstrip::clap
