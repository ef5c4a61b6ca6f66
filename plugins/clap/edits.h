// What is changed in a plugin's window, on its way to the audio thread and to the host.

#pragma once

#include <clap/events.h>

#include <array>
#include <atomic>
#include <cstdint>

#include "parameters.h"

namespace channelstrip::clap {

struct Edit {
  std::uint16_t type;  // CLAP_EVENT_PARAM_GESTURE_BEGIN, CLAP_EVENT_PARAM_VALUE or ..._END
  clap_id id;
  double value;
};

// One thread puts, another takes; neither waits.
class Edits {
 public:
  // False, and nothing is put, if there is no room: the host hasn't asked for a long time.
  bool put(const Edit& edit) {
    const std::uint32_t at = put_.load(std::memory_order_relaxed);
    if (at - taken_.load(std::memory_order_acquire) == kPlaces) return false;
    edits_[at % kPlaces] = edit;
    put_.store(at + 1, std::memory_order_release);
    return true;
  }
  // Whether all that was put has been taken. [of the one who puts]
  bool are_taken() const {
    return put_.load(std::memory_order_relaxed) == taken_.load(std::memory_order_acquire);
  }

  // Calls take(edit) for each that waits, and done() before they count as taken.
  template <class Take, class Done>
  void take(Take take, Done done) {
    const std::uint32_t end = put_.load(std::memory_order_acquire);
    std::uint32_t at = taken_.load(std::memory_order_relaxed);
    if (at == end) return;
    for (; at != end; ++at) take(edits_[at % kPlaces]);
    done();
    taken_.store(end, std::memory_order_release);
  }

 private:
  static constexpr std::uint32_t kPlaces = 1024;
  std::array<Edit, kPlaces> edits_;
  std::atomic<std::uint32_t> put_{0}, taken_{0};
};

}  // namespace channelstrip::clap
