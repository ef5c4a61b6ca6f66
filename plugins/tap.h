// What a strip on the audio thread hands to whoever looks at it: its latest samples, its meters and
// its values. The audio thread never waits, and does next to nothing while nobody looks.

#pragma once

#include <channelstrip/channelstrip.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>

#include "sample_ring.h"

namespace channelstrip::plugins {

// Readings that one thread writes and another takes; what comes while it is full is lost.
class MeterQueue {
 public:
  // [audio]
  void put(const channelstrip_meters& reading) {
    const std::uint32_t at = put_.load(std::memory_order_relaxed);
    if (at - taken_.load(std::memory_order_acquire) == kPlaces) return;
    readings_[at % kPlaces] = reading;
    put_.store(at + 1, std::memory_order_release);
  }

  // All that have come as one: the greatest peaks and reductions, the latest gains. False if none
  // has. [one other thread at a time]
  bool take(channelstrip_meters& all) {
    std::uint32_t at = taken_.load(std::memory_order_relaxed);
    const std::uint32_t end = put_.load(std::memory_order_acquire);
    if (at == end) return false;
    all = readings_[at % kPlaces];
    for (++at; at != end; ++at) add(all, readings_[at % kPlaces]);
    taken_.store(end, std::memory_order_release);
    return true;
  }

 private:
  static constexpr std::uint32_t kPlaces = 64;

  static void add(channelstrip_meters& all, const channelstrip_meters& next) {
    channelstrip_meters sum = next;
    sum.frames += all.frames;
    sum.not_finite += all.not_finite;
    for (std::size_t c = 0; c < CHANNELSTRIP_MOST_CHANNELS; ++c) {
      sum.overs[c] += all.overs[c];
      sum.input_peak[c] = std::max(sum.input_peak[c], all.input_peak[c]);
      sum.output_peak[c] = std::max(sum.output_peak[c], all.output_peak[c]);
      sum.greatest_gain[c] = std::max(sum.greatest_gain[c], all.greatest_gain[c]);
      sum.least_gain[c] = std::min(sum.least_gain[c], all.least_gain[c]);
    }
    sum.compressor_reduction = std::max(sum.compressor_reduction, all.compressor_reduction);
    sum.expander_reduction = std::max(sum.expander_reduction, all.expander_reduction);
    all = sum;
  }

  std::array<channelstrip_meters, kPlaces> readings_;
  std::atomic<std::uint32_t> put_{0}, taken_{0};
};

class Tap {
 public:
  // Of a format that may change while nothing runs.
  explicit Tap(std::uint32_t channels) : channels_(channels) {}

  struct Rings {
    explicit Rings(std::uint32_t count) : channels(count), inputs(count), outputs(count) {}
    std::uint32_t channels;
    SampleRing inputs, outputs;
  };

  // [audio] Before and behind a call's processing: it may be done in place.
  void see_inputs(const float* const* channels, std::uint32_t frames) {
    Rings* const rings = wanted();
    if (rings && are_there(channels)) rings->inputs.write(channels, frames);
  }
  void see_outputs(const float* const* channels, std::uint32_t frames) {
    Rings* const rings = wanted();
    if (rings && are_there(channels)) rings->outputs.write(channels, frames);
  }
  void see_meters(const channelstrip_meters& reading) {
    if (lookers_.load(std::memory_order_relaxed) > 0) meters_.put(reading);
  }
  void see_key(bool is_connected) { has_key_.store(is_connected, std::memory_order_relaxed); }

  // The thread of the one who looks. Rings stay until the strip goes. Throws std::bad_alloc.
  void look() {
    if (!rings_.load(std::memory_order_relaxed)) {
      owned_ = std::make_unique<Rings>(channels_);
      rings_.store(owned_.get(), std::memory_order_release);
    }
    lookers_.fetch_add(1, std::memory_order_relaxed);
  }
  void look_away() { lookers_.fetch_sub(1, std::memory_order_relaxed); }
  // Of as many channels as the strip has had since it looked.
  const Rings* rings() const { return owned_.get(); }
  MeterQueue& meters() { return meters_; }
  bool has_key() const { return has_key_.load(std::memory_order_relaxed); }

  // While nothing runs: another format. What is looked at is the new one's.
  void change(std::uint32_t channels) {
    channels_ = channels;
    if (!owned_) return;
    rings_.store(nullptr, std::memory_order_relaxed);
    owned_ = std::make_unique<Rings>(channels_);
    rings_.store(owned_.get(), std::memory_order_release);
  }

 private:
  Rings* wanted() const {
    if (lookers_.load(std::memory_order_relaxed) == 0) return nullptr;
    return rings_.load(std::memory_order_acquire);
  }

  // A host may have left out buffers.
  bool are_there(const float* const* channels) const {
    return std::all_of(channels, channels + channels_, [](const float* c) { return c != nullptr; });
  }

  std::uint32_t channels_;
  std::unique_ptr<Rings> owned_;  // [the looker's thread, or while nothing runs]
  std::atomic<Rings*> rings_{nullptr};
  std::atomic<int> lookers_{0};
  std::atomic<bool> has_key_{false};
  MeterQueue meters_;
};

}  // namespace channelstrip::plugins
