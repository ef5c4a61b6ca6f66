// What a plugin owns of the control side.

#pragma once

#include <channelstrip/channelstrip.h>

#include <cstddef>
#include <memory>
#include <new>

namespace channelstrip::plugins {

struct FreeSettings {
  void operator()(channelstrip_settings* settings) const { channelstrip_settings_free(settings); }
};
using Settings = std::unique_ptr<channelstrip_settings, FreeSettings>;

// Throws std::bad_alloc.
inline Settings new_settings() {
  Settings settings(channelstrip_settings_new());
  if (!settings) throw std::bad_alloc();
  return settings;
}

// A strip in memory that is there before it is, so that starting it anew allocates nothing.
class StripPlace {
 public:
  // Throws std::bad_alloc.
  StripPlace()
      : memory_(static_cast<std::byte*>(
            ::operator new (channelstrip_strip_size(), std::align_val_t{kAlignment}))) {}

  // Null where no strip can be had, by its sample rate.
  channelstrip_strip* start(const channelstrip_strip_options& options) {
    channelstrip_strip* strip = nullptr;
    channelstrip_strip_init(memory_.get(), channelstrip_strip_size(), &options, &strip);
    return strip;
  }

 private:
  static constexpr std::size_t kAlignment = 64;
  struct FreeMemory {
    void operator()(std::byte* memory) const {
      ::operator delete (memory, std::align_val_t{kAlignment});
    }
  };
  std::unique_ptr<std::byte, FreeMemory> memory_;
};

}  // namespace channelstrip::plugins
