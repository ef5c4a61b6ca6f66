#include "ebur128_meter.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <new>
#include <stdexcept>
#include <string_view>
#include <utility>

namespace channelstrip::host {
namespace {

constexpr std::array<std::pair<std::string_view, int>, 13> kSpeakers{{
    {"M", EBUR128_Mp000},
    {"L", EBUR128_Mp030},
    {"R", EBUR128_Mm030},
    {"C", EBUR128_Mp000},
    {"LFE", EBUR128_UNUSED},
    {"Ls", EBUR128_Mp110},
    {"Rs", EBUR128_Mm110},
    {"Lb", EBUR128_Mp135},
    {"Rb", EBUR128_Mm135},
    {"Lc", EBUR128_MpSC},
    {"Rc", EBUR128_MmSC},
    {"Cs", EBUR128_Mp180},
    {"S", EBUR128_Mp180},
}};

int position(std::string_view label, bool has_back_pair) {
  if (has_back_pair && label == "Ls") return EBUR128_Mp090;
  if (has_back_pair && label == "Rs") return EBUR128_Mm090;
  const auto found = std::ranges::find(kSpeakers, label, &decltype(kSpeakers)::value_type::first);
  return found == kSpeakers.end() ? int{EBUR128_Mp000} : found->second;
}

}  // namespace

Ebur128 open_ebur128(double sample_rate, const ChannelLayout& layout, int measures) {
  const auto channels = static_cast<unsigned>(layout.labels.size());
  Ebur128 meter(ebur128_init(channels, static_cast<unsigned long>(sample_rate), measures));
  if (!meter) {
    throw std::invalid_argument(fmt::format("no loudness can be measured at {} Hz", sample_rate));
  }
  const bool has_back_pair = std::ranges::find(layout.labels, "Lb") != layout.labels.end();
  for (unsigned c = 0; c < channels; ++c) {
    ebur128_set_channel(meter.get(), c, position(layout.labels[c], has_back_pair));
  }
  return meter;
}

void add_frames(ebur128_state& meter, std::span<const float> frames) {
  if (ebur128_add_frames_float(&meter, frames.data(), frames.size() / meter.channels) !=
      EBUR128_SUCCESS) {
    throw std::bad_alloc();
  }
}

double step_loudness(ebur128_state& meter) {
  double loudness = 0;
  ebur128_loudness_window(&meter, 100, &loudness);
  return loudness;
}

}  // namespace channelstrip::host
