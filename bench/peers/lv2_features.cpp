#include "lv2_features.h"

#include <lv2/atom/atom.h>
#include <lv2/buf-size/buf-size.h>
#include <lv2/parameters/parameters.h>

#include <algorithm>
#include <deque>
#include <mutex>
#include <string>

namespace channelstrip::bench {
namespace {

// Plugins may map URIs from threads of their own. A URI's number is its index plus one; elements of
// a deque stay where they are, and so does the text that unmapping returns.
struct Uris {
  std::mutex mutex;
  std::deque<std::string> uris;
};

Uris& known() {
  static Uris known;
  return known;
}

const char* uri_of(LV2_URID urid) {
  const std::lock_guard lock(known().mutex);
  return urid >= 1 && urid <= known().uris.size() ? known().uris[urid - 1].c_str() : nullptr;
}

}  // namespace

LV2_URID urid(std::string_view uri) {
  const std::lock_guard lock(known().mutex);
  auto& uris = known().uris;
  const auto found = std::ranges::find(uris, uri);
  const auto number = static_cast<LV2_URID>(found - uris.begin() + 1);
  if (found == uris.end()) uris.emplace_back(uri);
  return number;
}

Lv2Features::Lv2Features(double sample_rate, int samples_per_call)
    : sample_rate_(static_cast<float>(sample_rate)),
      samples_per_call_(samples_per_call),
      map_{nullptr, [](LV2_URID_Map_Handle, const char* uri) { return urid(uri); }},
      unmap_{nullptr, [](LV2_URID_Unmap_Handle, LV2_URID number) { return uri_of(number); }} {
  const auto option = [](const char* key, const char* type, const auto& value) {
    return LV2_Options_Option{LV2_OPTIONS_INSTANCE, 0,          urid(key),
                              sizeof(value),        urid(type), &value};
  };
  options_ = {option(LV2_PARAMETERS__sampleRate, LV2_ATOM__Float, sample_rate_),
              option(LV2_BUF_SIZE__minBlockLength, LV2_ATOM__Int, samples_per_call_),
              option(LV2_BUF_SIZE__maxBlockLength, LV2_ATOM__Int, samples_per_call_),
              option(LV2_BUF_SIZE__nominalBlockLength, LV2_ATOM__Int, samples_per_call_),
              LV2_Options_Option{}};
  features_ = {LV2_Feature{LV2_URID__map, &map_}, LV2_Feature{LV2_URID__unmap, &unmap_},
               LV2_Feature{LV2_OPTIONS__options, options_.data()},
               LV2_Feature{LV2_BUF_SIZE__boundedBlockLength, nullptr}};
  std::ranges::transform(features_, list_.begin(), [](const auto& feature) { return &feature; });
  list_.back() = nullptr;
}

bool Lv2Features::offers(std::string_view uri) const {
  return std::ranges::any_of(features_, [&](const auto& feature) { return feature.URI == uri; });
}

}  // namespace channelstrip::bench
