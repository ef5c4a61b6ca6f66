#include "plain_strip.h"

#include <ChannelStrip/frame/channel_strip.h>

namespace channelstrip::bench {
namespace {

template <int Channels, int Groups>
void process(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  for (auto context = begin; context != end; ++context) {
    process_instance<Channels, 16, Groups>(*context);
  }
}

struct Format {
  int channels, groups;
  AlgEntry_16_Stem* process;
};

constexpr Format kFormats[] = {
    {1, 1, process<1, 1>}, {2, 1, process<2, 1>}, {3, 2, process<3, 2>}, {4, 2, process<4, 2>},
    {4, 3, process<4, 3>}, {5, 3, process<5, 3>}, {6, 4, process<6, 4>}, {7, 4, process<7, 4>},
    {7, 5, process<7, 5>}, {8, 5, process<8, 5>},
};

}  // namespace

AlgEntry_16_Stem* plain_strip(int channels, int groups) {
  for (const Format& format : kFormats) {
    if (format.channels == channels && format.groups == groups) return format.process;
  }
  return nullptr;
}

}  // namespace channelstrip::bench
