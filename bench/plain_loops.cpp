#include "plain_loops.h"

#include "plain_strip.h"

namespace channelstrip::bench {

template <int Channels, int Groups>
void process_by_loops(const SChannelStrip_Alg_Context* const* begin, const void* end) {
  for (auto context = begin; context != end; ++context) {
    PlainLoops<Channels, Groups>(**context).process();
  }
}

#define INSTANTIATE(channels, groups)                                                             \
  template void process_by_loops<channels, groups>(const SChannelStrip_Alg_Context* const* begin, \
                                                   const void* end)
INSTANTIATE(1, 1);
INSTANTIATE(2, 1);
INSTANTIATE(3, 2);
INSTANTIATE(4, 2);
INSTANTIATE(4, 3);
INSTANTIATE(5, 3);
INSTANTIATE(6, 4);
INSTANTIATE(7, 4);
INSTANTIATE(7, 5);
INSTANTIATE(8, 5);
#undef INSTANTIATE

}  // namespace channelstrip::bench
