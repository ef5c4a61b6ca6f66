// What this host offers an LV2 plugin: numbers for URIs, and the options sample rate and block
// length. No worker, no inline display, no user interface.

#pragma once

#include <lv2/core/lv2.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>

#include <array>
#include <string_view>

namespace channelstrip::bench {

// The same number for the same URI throughout the process.
LV2_URID urid(std::string_view uri);

class Lv2Features {
 public:
  Lv2Features(double sample_rate, int samples_per_call);

  // The features point into this object.
  Lv2Features(const Lv2Features&) = delete;
  Lv2Features& operator=(const Lv2Features&) = delete;

  bool offers(std::string_view uri) const;

  // As plugins take them: ends with a null pointer.
  const LV2_Feature* const* get() const { return list_.data(); }

 private:
  float sample_rate_;
  int samples_per_call_;
  LV2_URID_Map map_;
  LV2_URID_Unmap unmap_;
  std::array<LV2_Options_Option, 5> options_;
  std::array<LV2_Feature, 4> features_;
  std::array<const LV2_Feature*, 5> list_;
};

}  // namespace channelstrip::bench
