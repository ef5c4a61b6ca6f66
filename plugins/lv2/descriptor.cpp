// What a host finds in the bundle's binary: a plugin for each format.

#include <lv2/core/lv2.h>
#include <lv2/core/lv2_util.h>

#include <array>
#include <exception>
#include <string>
#include <vector>

#include "instance.h"

namespace channelstrip::lv2 {
namespace {

Instance& instance_of(LV2_Handle handle) {
  return *static_cast<Instance*>(handle);
}

// Null for what can't be had, as hosts expect.
LV2_Handle instantiate(const LV2_Descriptor* descriptor, double sample_rate, const char* bundle,
                       const LV2_Feature* const* features) {
  const auto* map = static_cast<const LV2_URID_Map*>(lv2_features_data(features, LV2_URID__map));
  const auto* display =
      static_cast<const InlineDisplay*>(lv2_features_data(features, kInlineDisplayQueueDraw));
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    if (uri_of(format) != descriptor->URI) continue;
    try {
      return new Instance(format, sample_rate, map, display, bundle);
    } catch (const std::exception&) {
      return nullptr;
    }
  }
  return nullptr;
}

template <class Call>
LV2_State_Status guarded(Call call) {
  try {
    return call();
  } catch (const std::exception&) {
    return LV2_STATE_ERR_UNKNOWN;
  }
}

const LV2_State_Interface kState{
    .save =
        [](LV2_Handle handle, LV2_State_Store_Function store, LV2_State_Handle state,
           std::uint32_t /*flags*/, const LV2_Feature* const* /*features*/) {
          return guarded([&] { return instance_of(handle).save(store, state); });
        },
    .restore =
        [](LV2_Handle handle, LV2_State_Retrieve_Function retrieve, LV2_State_Handle state,
           std::uint32_t /*flags*/, const LV2_Feature* const* /*features*/) {
          return guarded([&] { return instance_of(handle).restore(retrieve, state); });
        }};

const InlineDisplayInterface kInlineDisplay{
    .render = [](LV2_Handle handle, std::uint32_t width, std::uint32_t height) -> ImageSurface* {
      try {
        return instance_of(handle).small_picture().draw(width, height);
      } catch (const std::exception&) {
        return nullptr;
      }
    }};

const void* extension(std::string_view wanted) {
  if (wanted == LV2_STATE__interface) return &kState;
  if (wanted == kInlineDisplayInterface) return &kInlineDisplay;
  return nullptr;
}

// The URIs live as long as the binary is loaded.
struct Descriptors {
  std::vector<std::string> uris;
  std::vector<LV2_Descriptor> all;

  Descriptors() {
    for (std::uint32_t f = 0; f < channelstrip_format_count(); ++f) uris.push_back(uri_of(f));
    for (const std::string& uri : uris) {
      all.push_back(
          {.URI = uri.c_str(),
           .instantiate = instantiate,
           .connect_port = [](LV2_Handle handle, std::uint32_t port,
                              void* data) { instance_of(handle).connect(port, data); },
           .activate = [](LV2_Handle handle) { instance_of(handle).activate(); },
           .run = [](LV2_Handle handle, std::uint32_t frames) { instance_of(handle).run(frames); },
           .deactivate = nullptr,
           .cleanup = [](LV2_Handle handle) { delete &instance_of(handle); },
           .extension_data = [](const char* wanted) { return extension(wanted); }});
    }
  }
};

}  // namespace
}  // namespace channelstrip::lv2

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
  static const channelstrip::lv2::Descriptors descriptors;
  return index < descriptors.all.size() ? &descriptors.all[index] : nullptr;
}
