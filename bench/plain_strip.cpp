#include "plain_strip.h"

#include <ChannelStrip/frame/channel_strip.h>
#include <tests/model/strip.h>

#include <algorithm>

namespace channelstrip::bench {
namespace {

template <int Channels, int Groups>
void by_model(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  for (auto context = begin; context != end; ++context) {
    model::process<float>(**context, Channels, Groups, model::SumOrder::kInputFirst);
  }
}

template <int Channels, int Groups>
void in_memory(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  for (auto context = begin; context != end; ++context) {
    process_instance<Channels, Groups>(*context);
  }
}

template <int Channels, int Groups>
constexpr PlainStrip kStrip = {Channels, Groups, process_by_loops<Channels, Groups>,
                               by_model<Channels, Groups>, in_memory<Channels, Groups>};

constexpr PlainStrip kStrips[] = {
    kStrip<1, 1>, kStrip<2, 1>, kStrip<3, 2>, kStrip<4, 2>, kStrip<4, 3>,
    kStrip<5, 3>, kStrip<6, 4>, kStrip<7, 4>, kStrip<7, 5>, kStrip<8, 5>,
};

}  // namespace

const PlainStrip& plain_strip(int channels, int groups) {
  return *std::ranges::find_if(kStrips, [=](const PlainStrip& strip) {
    return strip.channels == channels && strip.groups == groups;
  });
}

}  // namespace channelstrip::bench
