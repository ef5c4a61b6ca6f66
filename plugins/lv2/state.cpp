// What a host stores with a plugin beside its control ports: the link maps.

#include <lv2/atom/atom.h>

#include <cstring>
#include <string>

#include "instance.h"

namespace channelstrip::lv2 {
namespace {

std::string links_of(const channelstrip_settings* settings, std::uint32_t format) {
  std::size_t length = 0;
  channelstrip_settings_get_links(settings, format, nullptr, 0, &length);
  std::string map(length + 1, '\0');
  channelstrip_settings_get_links(settings, format, map.data(), map.size(), nullptr);
  map.resize(length);
  return map;
}

// Of all formats, so that a preset may hold those of several.
void copy_links(channelstrip_settings* to, const channelstrip_settings* from) {
  for (std::uint32_t format = 0; format < channelstrip_format_count(); ++format) {
    channelstrip_settings_set_links(to, format, links_of(from, format).c_str());
  }
}

}  // namespace

LV2_State_Status Instance::save(LV2_State_Store_Function store, LV2_State_Handle state) const {
  if (links_ == 0) return LV2_STATE_ERR_NO_FEATURE;
  const Settings links = plugins::new_settings();
  copy_links(links.get(), settings_.get());
  std::size_t length = 0;
  channelstrip_settings_write(links.get(), nullptr, 0, &length);
  std::string text(length + 1, '\0');
  channelstrip_settings_write(links.get(), text.data(), text.size(), nullptr);
  return store(state, links_, text.data(), text.size(), string_,
               LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

// A state without link maps means none.
LV2_State_Status Instance::restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle state) {
  if (links_ == 0) return LV2_STATE_ERR_NO_FEATURE;
  const Settings links = plugins::new_settings();
  std::size_t size = 0;
  std::uint32_t type = 0, flags = 0;
  if (const void* stored = retrieve(state, links_, &size, &type, &flags)) {
    if (type != string_) return LV2_STATE_ERR_BAD_TYPE;
    const auto* text = static_cast<const char*>(stored);
    const std::size_t length = strnlen(text, size);
    if (channelstrip_settings_read(links.get(), text, length, nullptr, nullptr) !=
        CHANNELSTRIP_OK) {
      return LV2_STATE_ERR_UNKNOWN;
    }
  }
  copy_links(settings_.get(), links.get());
  has_new_links_ = true;
  return LV2_STATE_SUCCESS;
}

}  // namespace channelstrip::lv2
