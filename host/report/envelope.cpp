#include "envelope.h"

namespace channelstrip::host {

void Envelope::add(std::span<const float> frames, std::size_t channels) {
  for (; !frames.empty(); frames = frames.subspan(channels)) {
    const float first = frames[channels_.front()];
    Extremes extremes{first, first};
    for (const std::size_t channel : channels_) {
      extremes.merge({frames[channel], frames[channel]});
    }
    track_.add(extremes);
  }
}

}  // namespace channelstrip::host
