#include "lv2_host.h"

#include <dlfcn.h>

#include <algorithm>
#include <stdexcept>
#include <string_view>

namespace channelstrip::plugin_test {
Lv2Binary::Lv2Binary(const char* path)
    : handle_(dlopen(path, RTLD_NOW | RTLD_LOCAL)),
      folder_(path, std::string_view(path).rfind('/') + 1) {
  if (!handle_) throw std::runtime_error(dlerror());
  find_ = reinterpret_cast<LV2_Descriptor_Function>(dlsym(handle_, "lv2_descriptor"));
  if (!find_) throw std::runtime_error("no lv2_descriptor");
}

Lv2Binary::~Lv2Binary() {
  if (handle_) dlclose(handle_);
}

std::uint32_t Lv2Instance::urid(const char* uri) {
  static std::map<std::string, std::uint32_t> ids;
  return ids.try_emplace(uri, static_cast<std::uint32_t>(ids.size() + 1)).first->second;
}

Lv2Instance::Lv2Instance(const Lv2Binary& binary, std::uint32_t format, double sample_rate,
                         Offers offers)
    : descriptor_(binary.descriptor(format)), ports_(channels_of(format)) {
  static LV2_URID_Map map{nullptr, [](LV2_URID_Map_Handle, const char* uri) { return urid(uri); }};
  const LV2_Feature feature{LV2_URID__map, &map};
  const LV2_Feature display{lv2::kInlineDisplayQueueDraw, &display_};
  const LV2_Feature* const all[] = {&feature, offers == Offers::kMapAndDisplay ? &display : nullptr,
                                    nullptr};
  const LV2_Feature* const none[] = {nullptr};
  handle_ = descriptor_->instantiate(descriptor_, sample_rate, binary.folder().c_str(),
                                     offers == Offers::kNothing ? none : all);
  if (!handle_) return;
  controls_.resize(ports_.first_parameter() + lv2::kPortParameterCount);
  controls_[ports_.enabled()] = 1;
  for (std::uint32_t i = 0; i < lv2::kPortParameterCount; ++i) {
    controls_[ports_.first_parameter() + i] = static_cast<float>(lv2::port_parameters()[i].initial);
  }
  connect_controls();
}

const lv2::ImageSurface* Lv2Instance::render(std::uint32_t width, std::uint32_t height) {
  const auto* drawing = static_cast<const lv2::InlineDisplayInterface*>(
      descriptor_->extension_data(lv2::kInlineDisplayInterface));
  return drawing ? drawing->render(handle_, width, height) : nullptr;
}

void Lv2Instance::connect_controls() {
  for (std::uint32_t port = ports_.enabled(); stride_ * port < controls_.size(); ++port) {
    descriptor_->connect_port(handle_, port, &controls_[stride_ * port]);
  }
}

void Lv2Instance::scatter_controls() {
  std::vector<float> scattered(2 * controls_.size());
  for (std::size_t port = 0; port < controls_.size(); ++port) scattered[2 * port] = controls_[port];
  controls_ = scattered;
  stride_ = 2;
  connect_controls();
}

Lv2Instance::~Lv2Instance() {
  if (handle_) descriptor_->cleanup(handle_);
}

float& Lv2Instance::control(const std::string& symbol) {
  if (symbol == "enabled") return controls_[stride_ * ports_.enabled()];
  const auto all = lv2::port_parameters();
  const auto found = std::ranges::find_if(
      all, [&](const channelstrip_parameter& p) { return symbol == p.symbol; });
  if (found == all.end()) throw std::out_of_range(symbol);
  const auto place = static_cast<std::size_t>(found - all.begin());
  return controls_.at(stride_ * (ports_.first_parameter() + place));
}

void Lv2Instance::run(const std::vector<const float*>& inputs, const float* key,
                      const std::vector<float*>& outputs, std::uint32_t frames) {
  for (std::uint32_t c = 0; c < ports_.channels(); ++c) {
    descriptor_->connect_port(handle_, ports_.input(c), const_cast<float*>(inputs[c]));
    descriptor_->connect_port(handle_, ports_.output(c), outputs[c]);
  }
  descriptor_->connect_port(handle_, ports_.key(), const_cast<float*>(key));
  descriptor_->run(handle_, frames);
}

const LV2_State_Interface& Lv2Instance::state_interface() const {
  return *static_cast<const LV2_State_Interface*>(
      descriptor_->extension_data(LV2_STATE__interface));
}

LV2_State_Status Lv2Instance::save(Lv2State& state) const {
  return state_interface().save(
      handle_,
      [](LV2_State_Handle to, std::uint32_t key, const void* value, std::size_t size,
         std::uint32_t type, std::uint32_t flags) {
        static_cast<Lv2State*>(to)->properties[key] = {
            std::string(static_cast<const char*>(value), size), type, flags};
        return LV2_STATE_SUCCESS;
      },
      &state, 0, nullptr);
}

LV2_State_Status Lv2Instance::restore(const Lv2State& state) {
  return state_interface().restore(
      handle_,
      [](LV2_State_Handle from, std::uint32_t key, std::size_t* size, std::uint32_t* type,
         std::uint32_t* flags) -> const void* {
        const auto& properties = static_cast<const Lv2State*>(from)->properties;
        const auto found = properties.find(key);
        if (found == properties.end()) return nullptr;
        *size = found->second.value.size();
        *type = found->second.type;
        *flags = found->second.flags;
        return found->second.value.data();
      },
      const_cast<Lv2State*>(&state), 0, nullptr);
}

}  // namespace channelstrip::plugin_test
