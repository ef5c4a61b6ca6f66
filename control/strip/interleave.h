// Copies frames of up to 8 channels between one interleaved stream and a buffer per channel.

#pragma once

#include <cstddef>
#include <utility>

namespace channelstrip::host {

// The number of channels as a constant lets the compiler shuffle whole registers. The buffer of
// each channel begins `stride` samples after the previous one.
template <std::size_t Channels>
void deinterleave_channels(const float* __restrict frames, std::size_t count,
                           float* __restrict buffers, std::size_t stride) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t c = 0; c < Channels; ++c) buffers[c * stride + i] = frames[i * Channels + c];
  }
}

template <std::size_t Channels>
void interleave_channels(const float* __restrict buffers, std::size_t stride, std::size_t count,
                         float* __restrict frames) {
  for (std::size_t i = 0; i < count; ++i) {
    for (std::size_t c = 0; c < Channels; ++c) frames[i * Channels + c] = buffers[c * stride + i];
  }
}

// Calls `work` with 1 .. 8 channels as a constant.
template <class Work>
void with_channels(std::size_t channels, Work work) {
  [&]<std::size_t... N>(std::index_sequence<N...>) {
    ((channels == N + 1 ? work.template operator()<N + 1>() : void()), ...);
  }
  (std::make_index_sequence<8>());
}

inline void deinterleave(const float* frames, std::size_t channels, std::size_t count,
                         float* buffers, std::size_t stride) {
  with_channels(channels,
                [&]<std::size_t N> { deinterleave_channels<N>(frames, count, buffers, stride); });
}

inline void interleave(const float* buffers, std::size_t stride, std::size_t channels,
                       std::size_t count, float* frames) {
  with_channels(channels,
                [&]<std::size_t N> { interleave_channels<N>(buffers, stride, count, frames); });
}

}  // namespace channelstrip::host
