// The latest frames of a stream, copied by the audio thread for one that draws. The writer never
// waits; a reader that is overtaken notices and does without.
//
// A sequence lock whose data are atomic, too, as in H.-J. Boehm, "Can seqlocks get along with
// programming language memory models?", MSPC 2012.

#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <span>

namespace channelstrip::plugins {

class SampleRing {
 public:
  static constexpr std::uint64_t kFrames = std::uint64_t{1} << 16;  // that it holds

  // Throws std::bad_alloc.
  explicit SampleRing(std::uint32_t channels)
      : channels_(channels), samples_(new std::atomic<float>[channels * kFrames]()) {}

  // Behind a call's frames, one buffer per channel. [audio]
  void write(const float* const* channels, std::uint32_t frames) {
    const std::uint64_t begin = end_.load(std::memory_order_relaxed), end = begin + frames;
    begun_.store(end, std::memory_order_relaxed);
    std::atomic_thread_fence(std::memory_order_release);
    const std::uint64_t first = frames > kFrames ? end - kFrames : begin;
    for (std::uint32_t c = 0; c < channels_; ++c) {
      std::atomic<float>* const ring = samples_.get() + c * kFrames;
      for (std::uint64_t at = first; at < end; ++at) {
        ring[at % kFrames].store(channels[c][at - begin], std::memory_order_relaxed);
      }
    }
    end_.store(end, std::memory_order_release);
  }

  // How many frames were written. [reader]
  std::uint64_t written() const { return end_.load(std::memory_order_acquire); }

  // A channel's latest frames; what was before the first is 0. False, and `to` of no meaning, if
  // the writer came along meanwhile. At most kFrames. [reader]
  bool read(std::uint32_t channel, std::span<float> to) const {
    const std::uint64_t end = written(), count = to.size();
    const std::atomic<float>* const ring = samples_.get() + channel * kFrames;
    for (std::uint64_t i = 0; i < count; ++i) {
      // Before the first frame the sum wraps around to places that are still 0.
      to[i] = ring[(end - count + i) % kFrames].load(std::memory_order_relaxed);
    }
    std::atomic_thread_fence(std::memory_order_acquire);
    return begun_.load(std::memory_order_relaxed) + count <= end + kFrames;
  }

 private:
  std::uint32_t channels_;
  std::unique_ptr<std::atomic<float>[]> samples_;
  std::atomic<std::uint64_t> begun_{0}, end_{0};
};

}  // namespace channelstrip::plugins
