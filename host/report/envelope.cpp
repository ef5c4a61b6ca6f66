#include "envelope.h"

#include <algorithm>

namespace channelstrip::host {

void Envelope::add(std::span<const std::vector<float>> buffers) {
  const std::size_t frames = buffers.front().size();
  for (std::size_t at = 0, count = 0; at < frames; at += count) {
    count = std::min(frames - at, track_.room());
    const auto extremes = [&](std::size_t channel) {
      return extremes_of(std::span(buffers[channel]).subspan(at, count));
    };
    Extremes all = extremes(channels_.front());
    for (const std::size_t channel : std::span(channels_).subspan(1)) all.merge(extremes(channel));
    track_.add(all, count);
  }
}

}  // namespace channelstrip::host
